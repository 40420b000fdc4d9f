#include "plcvarsettingsdlg.h"

#include "plcmodal_controls.h"

#include <wx/sizer.h>

namespace {

enum : int
{
    ID_AREA = 10005,
    ID_DATA_BLOCK = 10006,
    ID_FORMAT = 10007,
    ID_SIZE = 10008,
    ID_ADDRESS = 10009
};

constexpr int controlBorder = 5;
constexpr int gapBelowArea = 10;
constexpr int gapBelowDataBlock = 20;
constexpr int gapAboveButtons = 115;

/// The captions of a table's rows.
template <typename Table> wxArrayString Items(const Table& table)
{
    wxArrayString items;
    for (const auto& row : table) {
        items.Add(LanguageText(row.caption));
    }
    return items;
}

wxArrayString DataBlockItems()
{
    wxArrayString items;
    for (const DataBlock& block : varDBs) {
        wxString item =
            wxString::Format("DB %d - %s", block.number, LanguageText(block.description));
        if (block.index != noIndex) {
            item += wxString::Format(" %d", block.index);
        }
        items.Add(item);
    }
    return items;
}

/// @return the position of the block in the combo box, or wxNOT_FOUND.
int RowOfDataBlock(std::int32_t number)
{
    for (std::size_t row = 0; row < varDBs.size(); ++row) {
        if (varDBs[row].number == number) {
            return static_cast<int>(row);
        }
    }
    return wxNOT_FOUND;
}

} // namespace

wxBEGIN_EVENT_TABLE(PlcVarSettingDlg, wxDialog)
    EVT_BUTTON(wxID_OK, PlcVarSettingDlg::OnButtonOK)
    EVT_COMBOBOX(ID_AREA, PlcVarSettingDlg::OnComboType)
    EVT_RADIOBOX(ID_FORMAT, PlcVarSettingDlg::OnRBFormat)
    EVT_RADIOBOX(ID_SIZE, PlcVarSettingDlg::OnRBSize)
    EVT_TEXT_ENTER(ID_ADDRESS, PlcVarSettingDlg::OnEnterAddress)
wxEND_EVENT_TABLE()

PlcVarSettingDlg::PlcVarSettingDlg(wxWindow* parent, PlcDebugVar& var, const wxString& title)
    : wxDialog(parent, wxID_ANY, title), m_var(var)
{
    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(CreateOperandColumn(), 1, wxALL, controlBorder);
    columns->Add(CreateSizeColumn(), 0, wxALL, controlBorder);
    columns->Add(CreateAddressColumn(), 0, wxALL, controlBorder);
    ShowVar();
    SetSizerAndFit(columns);
}

wxStaticText* PlcVarSettingDlg::NewLabel(TextId text)
{
    return new wxStaticText(this, wxID_ANY, LanguageText(text));
}

wxSizer* PlcVarSettingDlg::CreateOperandColumn()
{
    const auto list = [this](int id, const wxArrayString& items) {
        return new wxComboBox(
            this, id, "", wxDefaultPosition, wxDefaultSize, items, wxCB_DROPDOWN | wxCB_READONLY);
    };
    // By a label's access key the keyboard goes to the control that is created next.
    wxStaticText* areaLabel = NewLabel(TextId::SettingsArea);
    m_pComboType = list(ID_AREA, Items(varAreas));
    wxStaticText* dataBlockLabel = NewLabel(TextId::SettingsDataBlock);
    m_pComboDB = list(ID_DATA_BLOCK, DataBlockItems());
    m_pRBFormat = new wxRadioBox(
        this,
        ID_FORMAT,
        LanguageText(TextId::SettingsFormat),
        wxDefaultPosition,
        wxDefaultSize,
        Items(varFormats),
        1,
        wxRA_SPECIFY_COLS);

    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(areaLabel, 0, wxALL, controlBorder);
    column->Add(m_pComboType, 0, wxEXPAND | wxALL, controlBorder);
    column->AddSpacer(gapBelowArea);
    column->Add(dataBlockLabel, 0, wxALL, controlBorder);
    column->Add(m_pComboDB, 0, wxEXPAND | wxALL, controlBorder);
    column->AddSpacer(gapBelowDataBlock);
    column->Add(m_pRBFormat, 0, wxEXPAND | wxALL, controlBorder);
    return column;
}

wxSizer* PlcVarSettingDlg::CreateSizeColumn()
{
    m_pRBSize = new wxRadioBox(
        this,
        ID_SIZE,
        LanguageText(TextId::SettingsSize),
        wxDefaultPosition,
        wxDefaultSize,
        Items(varSizes),
        1,
        wxRA_SPECIFY_COLS);

    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_pRBSize, 0, wxALL, controlBorder);
    return column;
}

wxSizer* PlcVarSettingDlg::CreateAddressColumn()
{
    const auto button = [this](int id, TextId text, TextId tip, long border) {
        wxButton* created = NewDialogButton(this, id, text, border);
        created->SetToolTip(LanguageText(tip));
        return created;
    };
    wxStaticText* addressLabel = NewLabel(TextId::SettingsAddress);
    m_pTCAddress = NewTextField(this, ID_ADDRESS);

    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(addressLabel, 0, wxALL, controlBorder);
    column->Add(m_pTCAddress, 0, wxEXPAND | wxALL, controlBorder);
    column->AddSpacer(gapAboveButtons);
    column->Add(
        button(wxID_OK, TextId::Ok, TextId::OkTip, wxRAISED_BORDER),
        0,
        wxEXPAND | wxALL,
        controlBorder);
    column->Add(
        button(wxID_CANCEL, TextId::Cancel, TextId::CancelTip, wxDOUBLE_BORDER),
        0,
        wxEXPAND | wxALL,
        controlBorder);
    return column;
}

void PlcVarSettingDlg::ShowVar()
{
    m_pComboType->SetSelection(m_var.area);
    if (m_pComboType->GetSelection() == eAreaDb) {
        m_pComboDB->SetSelection(RowOfDataBlock(m_var.dbNumber));
    }
    m_pRBFormat->SetSelection(m_var.format);
    m_pRBSize->SetSelection(m_var.size);
    m_pTCAddress->SetValue(m_var.address);
    UpdateComboType();
    UpdateRBSize();
    UpdateRBFormat();
}

bool PlcVarSettingDlg::IsTimerOrCounter() const
{
    return ::IsTimerOrCounter(m_pComboType->GetSelection());
}

void PlcVarSettingDlg::UpdateComboType()
{
    m_pComboDB->Enable(m_pComboType->GetSelection() == eAreaDb);
    if (m_pComboDB->GetSelection() == wxNOT_FOUND) {
        m_pComboDB->SetSelection(0);
    }
    if (IsTimerOrCounter()) {
        m_pRBSize->SetSelection(eSizeWord);
        m_pRBFormat->SetSelection(eFormatDecimal);
    }
    m_pRBSize->Enable(!IsTimerOrCounter());
    m_pRBFormat->Enable(!IsTimerOrCounter());
}

void PlcVarSettingDlg::UpdateRBSize()
{
    if (IsTimerOrCounter()) {
        return;
    }
    const bool isFloat = m_pRBFormat->GetSelection() == eFormatFloat;
    if (isFloat) {
        m_pRBSize->SetSelection(eSizeDouble);
    }
    m_pRBSize->Enable(!isFloat);
}

void PlcVarSettingDlg::UpdateRBFormat()
{
    if (IsTimerOrCounter()) {
        return;
    }
    const bool isBit = m_pRBSize->GetSelection() == eSizeBit;
    if (isBit) {
        m_pRBFormat->SetSelection(eFormatBinary);
    }
    m_pRBFormat->Enable(!isBit);
    // After the box: enabling it enables all of its items again.
    m_pRBFormat->Enable(eFormatFloat, m_pRBSize->GetSelection() == eSizeDouble);
}

void PlcVarSettingDlg::OnComboType(wxCommandEvent& event)
{
    UpdateComboType();
    UpdateRBSize();
    UpdateRBFormat();
    event.Skip();
}

void PlcVarSettingDlg::OnRBFormat(wxCommandEvent& event)
{
    UpdateRBSize();
    event.Skip();
}

void PlcVarSettingDlg::OnRBSize(wxCommandEvent& event)
{
    UpdateRBFormat();
    event.Skip();
}

void PlcVarSettingDlg::OnEnterAddress(wxCommandEvent& event)
{
    OnButtonOK(event);
    if (event.GetSkipped()) {
        EndModal(wxID_OK);
    }
}

void PlcVarSettingDlg::OnButtonOK(wxCommandEvent& event)
{
    m_var.area = m_pComboType->GetSelection();
    const auto row = static_cast<unsigned>(m_pComboDB->GetSelection());
    m_var.dbNumber =
        m_var.area == eAreaDb && row < varDBs.size() ? varDBs[row].number : noDataBlock;
    m_var.format = m_pRBFormat->GetSelection();
    m_var.size = m_pRBSize->GetSelection();

    const wxString address = m_pTCAddress->GetValue();
    if (m_var.CheckVarAddress(address, true)) {
        m_var.address = address;
        event.Skip();
    }
}
