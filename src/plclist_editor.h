#pragma once

#include <wx/grid.h>

/// Edits a value. The toolkit's own editor commits the text when it loses the keyboard; this one
/// only when it loses it to something else in its window. When another window takes the keyboard,
/// as a host's alarm does in the middle of the typing, the half-typed value is not sent to the
/// machine: the editor waits for the keyboard to come back. GUI thread.
class ValueEditor : public wxGridCellTextEditor
{
public:
    void Create(wxWindow* parent, wxWindowID id, wxEvtHandler* handler) override;

    wxGridCellEditor* Clone() const override { return new ValueEditor; }
};
