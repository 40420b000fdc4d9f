#include "pagesession.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/init.h>

// Both pages in real windows beside the same taken literally, in turns.

namespace {

constexpr int stepsOfASession = 5 * stepsOfARun;

void RunSessions(const StepOptions& options)
{
    Dice dice(options.seed);
    std::unique_ptr<Session> session;
    for (int step = 0; step < options.steps; ++step) {
        if (step % stepsOfASession == 0) {
            const int firstRun = step / stepsOfARun;
            const bool onWatchPage = step / stepsOfASession % 2 == 1;
            session.reset(); // the host behind both pages can be there once only
            if (onWatchPage) {
                session = NewVarSession(options, dice);
            } else {
                session = NewPrgSession(options, dice, IsLargeRun(firstRun + 1));
            }
        }
        session->Run(step);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const StepOptions options = ReadStepOptions(argc, argv);
    int noArguments = 0;
    gtk_init(&noArguments, nullptr);
    if (!wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) {
        return EXIT_FAILURE;
    }
    RunSessions(options);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return EXIT_SUCCESS;
}
