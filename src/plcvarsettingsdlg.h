#pragma once

#include "plcdebugvar.h"
#include "plcintlang.h"

#include <wx/combobox.h>
#include <wx/dialog.h>
#include <wx/radiobox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

/// The dialog in which a watched operand is defined or changed. GUI thread.
class PlcVarSettingDlg : public wxDialog
{
public:
    /// @param var edited in place; belongs to the caller and outlives the dialog. An OK that was
    ///        refused has changed area, block, format and size already, and a Cancel keeps that.
    PlcVarSettingDlg(wxWindow* parent, PlcDebugVar& var, const wxString& title);

private:
    wxStaticText* NewLabel(TextId text);
    wxSizer* CreateOperandColumn();
    wxSizer* CreateSizeColumn();
    wxSizer* CreateAddressColumn();
    void ShowVar();

    /// The block combo box and both radio boxes follow the area.
    void UpdateComboType();
    /// The size follows the format: floating point is a double word.
    void UpdateRBSize();
    /// The format follows the size: a bit is binary, floating point needs a double word.
    void UpdateRBFormat();

    bool IsTimerOrCounter() const;

    void OnComboType(wxCommandEvent& event);
    void OnRBFormat(wxCommandEvent& event);
    void OnRBSize(wxCommandEvent& event);
    void OnEnterAddress(wxCommandEvent& event);
    void OnButtonOK(wxCommandEvent& event);

    PlcDebugVar& m_var;
    wxComboBox* m_pComboType = nullptr;
    wxComboBox* m_pComboDB = nullptr;
    wxRadioBox* m_pRBFormat = nullptr;
    wxRadioBox* m_pRBSize = nullptr;
    wxTextCtrl* m_pTCAddress = nullptr;

    wxDECLARE_EVENT_TABLE();
};
