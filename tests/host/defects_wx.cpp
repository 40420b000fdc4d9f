#include "defects.h"

#include <wx/app.h>
#include <wx/frame.h>
#include <wx/init.h>

void SpoilWxHostByCreate()
{
    wxWindow* const debugger = wxTopLevelWindows.GetLast()->GetData();
    if (Has("renames-the-application")) {
        wxTheApp->SetAppName("PLCDebugger");
    }
    if (Has("takes-the-top-window")) {
        wxTheApp->SetTopWindow(debugger);
    }
    if (Has("hides-the-host")) {
        wxTheApp->GetTopWindow()->Hide();
    }
    if (Has("outlives-the-hosts-window")) {
        debugger->GetParent()->RemoveChild(debugger);
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
