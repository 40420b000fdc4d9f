#pragma once

#include <wx/dialog.h>
#include <wx/textctrl.h>

/// A small dialog that collects the text of a new value. GUI thread.
class PlcVarValueDlg : public wxDialog
{
public:
    explicit PlcVarValueDlg(wxWindow* parent);

    /// @return the text as it stands in the field.
    wxString GetVarTCValue() const;

private:
    void OnEnter(wxCommandEvent& event);

    wxTextCtrl* m_pTCValue = nullptr;

    wxDECLARE_EVENT_TABLE();
};
