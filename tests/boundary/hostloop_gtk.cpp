#include "hostloop.h"
#include "hostloop_inside.h"

#include <gtk/gtk.h>

#include <atomic>

// A plain GTK 3 host: gtk_init(), gtk_main(), and no application object of the toolkit.

namespace {

std::atomic<bool> loopHasEnded = false;
bool testsAreOver = false;

void QuitLoop()
{
    testsAreOver = true;
    gtk_main_quit();
}

void RunLoop()
{
    gtk_main();
    while (!testsAreOver) {
        loopHasEnded = true; // a real host would have ended with this
        gtk_main();
    }
}

} // namespace

int RunHost(int argc, char** argv, int (*tests)())
{
    gtk_init(&argc, &argv);
    return RunTestsBeside(tests, RunLoop, QuitLoop);
}

bool HostLoopHasEnded()
{
    return loopHasEnded;
}

bool HostOwnsTheToolkit()
{
    return false;
}
