#pragma once

#include <wx/grid.h>

#include <functional>

/// Edits a value. The toolkit's own editor commits the text whenever it loses the keyboard, also to
/// a host's alarm window in the middle of the typing; this one leaves it to its list what becomes
/// of the text then. GUI thread.
class ValueEditor : public wxGridCellTextEditor
{
public:
    /// @param onKeyboardLost called whenever the keyboard leaves the editor, also when an edit
    /// ends.
    explicit ValueEditor(std::function<void()> onKeyboardLost);

    void Create(wxWindow* parent, wxWindowID id, wxEvtHandler* handler) override;
    bool
    EndEdit(int row, int column, const wxGrid* grid, const wxString& oldText, wxString* newText)
        override;
    wxString GetValue() const override;

    wxGridCellEditor* Clone() const override { return new ValueEditor(m_onKeyboardLost); }

private:
    std::function<void()> m_onKeyboardLost;
};
