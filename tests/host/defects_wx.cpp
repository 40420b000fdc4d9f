#include "defects.h"

#include <wx/app.h>
#include <wx/frame.h>
#include <wx/init.h>

namespace {

/// The debugger's, when it has just been created.
wxWindow* NewestWindow()
{
    return wxTopLevelWindows.GetLast()->GetData();
}

} // namespace

void SpoilWxHostByCreate()
{
    if (Has("renames-the-application")) {
        wxTheApp->SetAppName("PLCDebugger");
    }
    if (Has("takes-the-top-window")) {
        wxTheApp->SetTopWindow(NewestWindow());
    }
    if (Has("hides-the-host")) {
        wxTheApp->GetTopWindow()->Hide();
    }
    if (Has("outlives-the-hosts-window")) {
        NewestWindow()->GetParent()->RemoveChild(NewestWindow());
    }
}

void SpoilWxHostByDestroy()
{
    if (Has("leaves-its-frame")) {
        new wxFrame(wxTheApp->GetTopWindow(), wxID_ANY, "PLC debugger");
    }
    if (Has("ends-the-main-loop")) {
        wxTheApp->ExitMainLoop();
    }
    if (Has("ends-the-application")) {
        wxTheApp->OnExit();
        wxEntryCleanup();
    }
}

void SpoilWxHostByReleases(bool inDestroy)
{
    if (Has("lets-commands-through") && !inDestroy) {
        wxCommandEvent exit(wxEVT_MENU, wxID_EXIT);
        wxTheApp->GetTopWindow()->ProcessWindowEvent(exit);
    }
}
