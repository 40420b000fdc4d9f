#include "plclist_editor.h"

#include "plcdebugvar_value.h"

#include <wx/textctrl.h>

#include <utility>

ValueEditor::ValueEditor(std::function<void()> onKeyboardLost)
    : m_onKeyboardLost(std::move(onKeyboardLost))
{
}

void ValueEditor::Create(wxWindow* parent, wxWindowID id, wxEvtHandler* handler)
{
    wxGridCellTextEditor::Create(parent, id, handler);
    // What the toolkit's handler does with this event is to commit. The control gets it either way.
    handler->Bind(wxEVT_KILL_FOCUS, [this, handler](wxFocusEvent& event) {
        handler->GetNextHandler()->ProcessEvent(event);
        m_onKeyboardLost();
    });
}

bool ValueEditor::EndEdit(
    int row, int column, const wxGrid* grid, const wxString& oldText, wxString* newText)
{
    Text()->ChangeValue(GetValue());
    return wxGridCellTextEditor::EndEdit(row, column, grid, oldText, newText);
}

wxString ValueEditor::GetValue() const
{
    return EnteredText(wxGridCellTextEditor::GetValue());
}
