#include "hostloop.h"
#include "hostloop_inside.h"
#include "wxhost.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/menu.h>

#include <atomic>

// A host that is a wxWidgets program: an application object and a window with a menu of its own.

namespace {

std::atomic<bool> loopHasEnded = false;
bool testsAreOver = false;
int (*testsToRun)() = nullptr;
int testResult = EXIT_FAILURE;
int exitCommands = 0;
int appExits = 0;
wxFrame* hostFrame = nullptr;

void QuitLoop()
{
    testsAreOver = true;
    wxTheApp->ExitMainLoop();
}

/// A message in front of a host window that is still being opened makes the toolkit complain.
int RunTestsInOpenHost()
{
    const bool open = HoldsOnGui([] { return gtk_widget_get_mapped(hostFrame->GetHandle()) != 0; });
    return open ? testsToRun() : EXIT_FAILURE;
}

} // namespace

class HostApp : public wxApp
{
public:
    bool OnInit() override
    {
        auto* menu = new wxMenu;
        menu->Append(wxID_EXIT, "Leave the machine");
        auto* menuBar = new wxMenuBar;
        menuBar->Append(menu, "Machine");
        hostFrame = new wxFrame(nullptr, wxID_ANY, "Machine");
        hostFrame->SetMenuBar(menuBar);
        hostFrame->Bind(
            wxEVT_MENU, [](wxCommandEvent&) { ++exitCommands; }, wxID_EXIT);
        // A click meant for the debugger, which has just closed, may meet this window's close box.
        hostFrame->Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) { event.Veto(); });
        hostFrame->SetSize(300, 120);
        hostFrame->Show();
        return true;
    }

    int OnRun() override
    {
        const auto loop = [this] {
            wxApp::OnRun();
            while (!testsAreOver) {
                loopHasEnded = true; // a real host would have ended with this
                wxApp::OnRun();
            }
        };
        testResult = RunTestsBeside(RunTestsInOpenHost, loop, QuitLoop);
        return testResult;
    }

    int OnExit() override
    {
        ++appExits;
        return wxApp::OnExit();
    }
};

wxIMPLEMENT_APP_NO_MAIN(HostApp);

int RunHost(int argc, char** argv, int (*tests)())
{
    testsToRun = tests;
    wxEntry(argc, argv);
    return testResult;
}

bool HostLoopHasEnded()
{
    return loopHasEnded;
}

bool HostOwnsTheToolkit()
{
    return true;
}

wxFrame& HostFrame()
{
    return *hostFrame;
}

int HostExitCommands()
{
    return exitCommands;
}

int HostAppExits()
{
    return appExits;
}
