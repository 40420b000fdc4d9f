#include "hostloop.h"

#include "hostloop_inside.h"
#include "waitfor.h"

#include <glib.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>

namespace {

constexpr guint lookAgainMs = 5;

std::thread::id guiThread;

/// Held while something is given to the GUI thread, which then takes it in turn: the thread
/// sanitizer does not see GLib's own lock.
std::mutex handOver;

void TakeWhatWasHandedOver()
{
    const std::lock_guard lock(handOver);
}

gboolean RunPosted(gpointer work)
{
    TakeWhatWasHandedOver();
    const std::unique_ptr<std::function<void()>> owned(static_cast<std::function<void()>*>(work));
    (*owned)();
    return G_SOURCE_REMOVE;
}

/// A condition that is looked at again and again; on the stack of HoldsOnGui().
struct Look
{
    const std::function<bool()>& condition;
    std::promise<void> holds;
    bool done = false;
};

gboolean LookAgain(gpointer data)
{
    TakeWhatWasHandedOver();
    Look& look = *static_cast<Look*>(data);
    look.done = look.condition();
    if (look.done) {
        look.holds.set_value();
    }
    return look.done ? G_SOURCE_REMOVE : G_SOURCE_CONTINUE;
}

} // namespace

int RunTestsBeside(int (*tests)(), const std::function<void()>& loop, void (*quitLoop)())
{
    guiThread = std::this_thread::get_id();
    int result = EXIT_FAILURE;
    std::thread operatorThread([&] {
        result = tests();
        PostToGui(quitLoop);
    });
    loop();
    operatorThread.join();
    return result;
}

void PostToGui(std::function<void()> work)
{
    const std::lock_guard lock(handOver);
    g_idle_add_full(
        G_PRIORITY_DEFAULT,
        RunPosted,
        std::make_unique<std::function<void()>>(std::move(work)).release(),
        nullptr);
}

void RunOnGui(const std::function<void()>& work)
{
    if (std::this_thread::get_id() == guiThread) {
        work();
        return;
    }
    std::promise<void> done;
    PostToGui([&] {
        work();
        done.set_value();
    });
    if (done.get_future().wait_for(waitLimit) != std::future_status::ready) {
        // What is posted lives on our stack, so there is no way on.
        std::fputs("the GUI thread runs no loop any more\n", stderr);
        std::abort();
    }
}

bool HoldsOnGui(const std::function<bool()>& condition)
{
    Look look{condition, {}};
    auto holds = look.holds.get_future();
    guint source = 0;
    {
        const std::lock_guard lock(handOver);
        source = g_timeout_add(lookAgainMs, LookAgain, &look);
    }
    holds.wait_for(waitLimit);
    return OnGui([&] {
        if (!look.done) {
            g_source_remove(source);
        }
        return look.done;
    });
}
