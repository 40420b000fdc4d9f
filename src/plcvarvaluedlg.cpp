#include "plcvarvaluedlg.h"

#include "plcmodal_controls.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

namespace {

constexpr int ID_VALUE = 10013;

constexpr int fieldBorder = 30;
constexpr int buttonBorder = 20;
constexpr int spacerWidth = 20;
constexpr int spacerHeight = 8;

} // namespace

wxBEGIN_EVENT_TABLE(PlcVarValueDlg, wxDialog)
    EVT_TEXT_ENTER(ID_VALUE, PlcVarValueDlg::OnEnter)
wxEND_EVENT_TABLE()

PlcVarValueDlg::PlcVarValueDlg(wxWindow* parent)
    : wxDialog(
          parent,
          wxID_ANY,
          LanguageText(TextId::VarColumnValue),
          wxDefaultPosition,
          wxDefaultSize,
          wxDEFAULT_DIALOG_STYLE),
      m_pTCValue(NewTextField(this, ID_VALUE))
{
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(
        new wxStaticText(this, wxID_ANY, LanguageText(TextId::ValuePrompt)),
        0,
        wxLEFT | wxRIGHT | wxTOP,
        fieldBorder);
    column->Add(spacerWidth, spacerHeight);

    column->Add(m_pTCValue, 0, wxLEFT | wxRIGHT, fieldBorder);
    column->Add(
        NewDialogButton(this, wxID_OK, TextId::Ok, wxRAISED_BORDER),
        0,
        wxALIGN_CENTER | wxALL,
        buttonBorder);
    SetSizerAndFit(column);
}

wxString PlcVarValueDlg::GetVarTCValue() const
{
    return m_pTCValue->GetValue();
}

void PlcVarValueDlg::OnEnter(wxCommandEvent& /*event*/)
{
    EndModal(wxID_OK);
}
