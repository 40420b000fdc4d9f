#include "plclist_editor.h"

#include <gtk/gtk.h>

namespace {

bool WindowHasKeyboard(const wxWindow& control)
{
    GtkWidget* window = gtk_widget_get_toplevel(control.GetHandle());
    return GTK_IS_WINDOW(window) && gtk_window_has_toplevel_focus(GTK_WINDOW(window)) != FALSE;
}

} // namespace

void ValueEditor::Create(wxWindow* parent, wxWindowID id, wxEvtHandler* handler)
{
    wxGridCellTextEditor::Create(parent, id, handler);
    // What the toolkit's handler does with this event is to commit. The control gets it either way.
    handler->Bind(wxEVT_KILL_FOCUS, [this, handler](wxFocusEvent& event) {
        const bool commits = WindowHasKeyboard(*GetControl());
        if (!commits) {
            handler->GetNextHandler()->ProcessEvent(event);
        }
        event.Skip(commits);
    });
}
