#include "plcvargrid_editor.h"

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
    // The grid's own; its type information is not exported.
    auto* committing = static_cast<wxGridCellEditorEvtHandler*>(handler);
    handler->Bind(wxEVT_KILL_FOCUS, [this, committing](wxFocusEvent& event) {
        committing->SetInSetFocus(!WindowHasKeyboard(*GetControl()));
        event.Skip();
    });
}
