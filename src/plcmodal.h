#pragma once

#include "plcdebug_host.h"
#include "plcintlang.h"

#include <wx/dialog.h>
#include <wx/string.h>

// Leaving the plug-in's code for a while: into a dialog's loop or into the host. Whoever does so
// goes through here, because the host may take the debugger down meanwhile. GUI thread.

/// Marks a stretch of plug-in code that a loop or a host callback may re-enter. While one is alive
/// the frame is not deleted, so members stay valid; what the stretch was about may be gone.
class PlcCallOut
{
public:
    PlcCallOut();
    ~PlcCallOut();
    PlcCallOut(const PlcCallOut&) = delete;
    PlcCallOut(PlcCallOut&&) = delete;
    PlcCallOut& operator=(const PlcCallOut&) = delete;
    PlcCallOut& operator=(PlcCallOut&&) = delete;

    /// @return true while any of them is alive.
    static bool Active();

    /// Runs @p work from the GUI thread's loop as soon as none is alive any more. Only the last
    /// work set is run.
    static void RunWhenNoneActive(void (*work)());
};

/// Shows a dialog modally inside the host's main loop, which goes on running afterwards.
/// @return what ShowModal() returns; wxID_CANCEL when EndOpenDialogs() has ended it.
int RunModal(wxDialog& dialog);

/// Shows a message with an OK button only and no parent window.
void ShowMessage(TextId caption, const wxString& message);

/// Asks a question with the buttons Yes and No, centred on @p parent.
/// @return true for Yes only; closing the question is a No.
bool AskYesNo(wxWindow* parent, TextId caption, TextId question);

/// Ends every dialog, message and question that RunModal(), ShowMessage() and AskYesNo() are
/// showing, innermost first, as cancelled.
void EndOpenDialogs();

/// Hands a request to the host; does nothing when the host left the callback null.
void CallHost(PlcRequestCallback callback, const CMD_DATA& request);

/// Ends a menu that takes every key and click of the process without being on the screen: GTK opens
/// it so when a key comes while another program holds the pointer.
void EndUnseenMenu();
