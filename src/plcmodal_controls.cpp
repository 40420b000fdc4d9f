#include "plcmodal_controls.h"

#include <gtk/gtk.h>

wxButton* NewDialogButton(wxWindow* parent, int id, TextId text, long style)
{
    auto* button =
        new wxButton(parent, wxID_ANY, LanguageText(text), wxDefaultPosition, wxDefaultSize, style);
    button->SetId(id);
    return button;
}

wxTextCtrl* NewTextField(wxWindow* parent, int id)
{
    auto* field =
        new wxTextCtrl(parent, id, "", wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER);
    int height = 0;
    gtk_widget_get_preferred_height(field->GetHandle(), nullptr, &height);
    field->SetMinSize({wxDefaultCoord, height}); // the toolkit's own guess cuts larger fonts
    parent->Bind(wxEVT_INIT_DIALOG, [field](wxInitDialogEvent& event) {
        field->SetFocus();
        field->SelectAll();
        event.Skip();
    });
    return field;
}
