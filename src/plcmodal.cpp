#include "plcmodal.h"

#include <gtk/gtk.h>
#include <wx/evtloop.h>
#include <wx/msgdlg.h>

#include <vector>

namespace {

int activeCallOuts = 0;
void (*pendingWork)() = nullptr;

gboolean RunPendingWork(gpointer /*unused*/)
{
    if (activeCallOuts == 0 && pendingWork != nullptr) {
        const auto work = pendingWork;
        pendingWork = nullptr;
        work();
    }
    return G_SOURCE_REMOVE;
}

void RunPendingWorkFromLoop()
{
    g_idle_add_full(G_PRIORITY_HIGH, RunPendingWork, nullptr, nullptr);
}

/// A dialog that is being shown; on the stack of RunModal().
struct OpenDialog
{
    wxDialog& dialog;
    int result = wxID_CANCEL;
    bool ended = false; ///< By EndOpenDialogs().
};

std::vector<OpenDialog*>& OpenDialogs()
{
    static std::vector<OpenDialog*> dialogs; // innermost last
    return dialogs;
}

void ShowOpenDialog(OpenDialog& open)
{
    if (!open.ended) {
        open.result = open.dialog.ShowModal();
    }
}

gboolean ShowOpenDialogAndQuit(gpointer open)
{
    ShowOpenDialog(*static_cast<OpenDialog*>(open));
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

/// Cancels what a file dialog asks or reports in a dialog of its own, in a loop that the toolkit
/// does not know: the file dialog cannot return before.
void CancelDialogsOver(wxDialog& dialog)
{
    GList* windows = gtk_window_list_toplevels();
    for (GList* node = windows; node != nullptr; node = node->next) {
        auto* window = static_cast<GtkWindow*>(node->data);
        if (GTK_IS_DIALOG(window) &&
            GTK_WIDGET(gtk_window_get_transient_for(window)) == dialog.GetHandle()) {
            gtk_dialog_response(GTK_DIALOG(window), GTK_RESPONSE_CANCEL);
        }
    }
    g_list_free(windows);
}

/// Ends the innermost dialog if EndOpenDialogs() has marked it. The one around it is ended when
/// this one has returned: the toolkit can only leave the innermost of its loops.
void EndInnermostDialog()
{
    if (OpenDialogs().empty() || !OpenDialogs().back()->ended) {
        return;
    }
    wxDialog& dialog = OpenDialogs().back()->dialog;
    if (dynamic_cast<wxMessageDialog*>(&dialog) != nullptr) {
        GtkWidget* widget = dialog.GetHandle();
        if (widget != nullptr) {
            gtk_dialog_response(GTK_DIALOG(widget), GTK_RESPONSE_CANCEL);
        }
    } else if (dialog.IsModal()) {
        CancelDialogsOver(dialog);
        dialog.EndModal(wxID_CANCEL);
    }
}

} // namespace

PlcCallOut::PlcCallOut()
{
    ++activeCallOuts;
}

PlcCallOut::~PlcCallOut()
{
    --activeCallOuts;
    if (activeCallOuts == 0 && pendingWork != nullptr) {
        RunPendingWorkFromLoop();
    }
}

bool PlcCallOut::Active()
{
    return activeCallOuts != 0;
}

void PlcCallOut::RunWhenNoneActive(void (*work)())
{
    pendingWork = work;
    if (activeCallOuts == 0) {
        RunPendingWorkFromLoop();
    }
}

int RunModal(wxDialog& dialog)
{
    const PlcCallOut callOut;
    OpenDialog open{dialog};
    OpenDialogs().push_back(&open);
    if (wxEventLoopBase::GetActive() != nullptr) {
        ShowOpenDialog(open);
    } else {
        // When its loop ends, the toolkit quits one level more of gtk_main(), to let an enclosing
        // loop of its own look at its state. In a plain GTK host that level would be the host's,
        // and the machine-control program would end with the dialog: so the dialog gets a level to
        // quit.
        g_idle_add_full(G_PRIORITY_HIGH, ShowOpenDialogAndQuit, &open, nullptr);
        gtk_main();
    }
    OpenDialogs().pop_back();
    EndInnermostDialog();
    return open.ended ? static_cast<int>(wxID_CANCEL) : open.result;
}

void ShowMessage(TextId caption, const wxString& message)
{
    wxMessageDialog dialog(nullptr, message, LanguageText(caption), wxOK);
    RunModal(dialog);
}

bool AskYesNo(wxWindow* parent, TextId caption, TextId question)
{
    wxMessageDialog dialog(
        parent, LanguageText(question), LanguageText(caption), wxYES_NO | wxCENTRE);
    return RunModal(dialog) == wxID_YES;
}

void EndOpenDialogs()
{
    for (OpenDialog* open : OpenDialogs()) {
        open->ended = true;
    }
    EndInnermostDialog();
}

void CallHost(PlcRequestCallback callback, const CMD_DATA& request)
{
    if (callback != nullptr) {
        const PlcCallOut callOut;
        callback(&request);
    }
}

void EndUnseenMenu()
{
    GtkWidget* holder = gtk_grab_get_current();
    if (GTK_IS_MENU(holder) && gtk_widget_get_mapped(holder) == FALSE) {
        gtk_menu_shell_deactivate(GTK_MENU_SHELL(holder));
    }
}
