#include "plcvarpanel.h"

#include "plcmodal.h"
#include "plcvargrid.h"
#include "plcvarpanel_file.h"
#include "plcvarsettingsdlg.h"

#include <wx/button.h>
#include <wx/sizer.h>

#include <algorithm>
#include <utility>

namespace {

enum : int
{
    ID_VAR_DEFINE = 10001,
    ID_VAR_MODIFY = 10002,
    ID_VAR_DELETE = 10003
};

constexpr int border = 5;

} // namespace

wxBEGIN_EVENT_TABLE(PlcVarPanel, wxPanel)
    EVT_BUTTON(ID_VAR_DEFINE, PlcVarPanel::OnButtonDefine)
    EVT_BUTTON(ID_VAR_MODIFY, PlcVarPanel::OnButtonModify)
    EVT_BUTTON(ID_VAR_DELETE, PlcVarPanel::OnButtonDelete)
wxEND_EVENT_TABLE()

PlcVarPanel::PlcVarPanel(wxWindow* parent, const PLC_DBG_INIT& init, wxFrame* frame)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER),
      m_init(init), m_pFrame(frame)
{
    CreateGrid();
    auto* gridColumn = new wxBoxSizer(wxVERTICAL);
    gridColumn->Add(m_pGrid, 1, wxEXPAND | wxALL, border);

    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(gridColumn, 1, wxEXPAND | wxALL, border);
    columns->Add(CreateButtons(), 0, wxALL, border);
    SetAutoLayout(true);
    SetSizer(columns);
    columns->Fit(this);
    m_pGrid->SetFocus();
}

void PlcVarPanel::CreateGrid()
{
    m_pGrid = new PlcVarGrid(this, m_vars);
    m_pGrid->SetColLabelValue(varColumnOperand, LanguageText(TextId::VarColumnOperand));
    m_pGrid->SetColLabelValue(varColumnValue, LanguageText(TextId::VarColumnValue));
    m_pGrid->SetColLabelValue(varColumnFormat, LanguageText(TextId::VarColumnFormat));
    m_pGrid->AutoSize();
}

wxSizer* PlcVarPanel::CreateButtons()
{
    const auto button = [this](int id, TextId caption, TextId tip) {
        auto* created = new wxButton(
            this, id, LanguageText(caption), wxDefaultPosition, wxDefaultSize, wxRAISED_BORDER);
        created->SetToolTip(LanguageText(tip));
        // After the click, if it is one: a press that ends beside the button sends nothing.
        created->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
            CallAfter(&PlcVarPanel::DiscardEdit);
            event.Skip();
        });
        return created;
    };
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(button(ID_VAR_DEFINE, TextId::VarDefine, TextId::VarDefineTip), 0, wxALL, border);
    column->Add(
        button(ID_VAR_MODIFY, TextId::VarModify, TextId::VarModifyTip),
        0,
        wxALIGN_CENTER | wxALL,
        border);
    column->Add(
        button(ID_VAR_DELETE, TextId::VarDelete, TextId::VarDeleteTip),
        0,
        wxALIGN_CENTER | wxALL,
        border);
    return column;
}

void PlcVarPanel::Reset()
{
    DiscardEdit();
    m_pGrid->DeleteAllRows();
    m_modified = false;
    ReleaseAndForgetVars();
}

bool PlcVarPanel::LoadFile(const wxString& path)
{
    const std::optional<wxArrayString> lines = ReadListFile(path);
    if (!lines) {
        ShowMessage(TextId::ListFileCaption, LanguageText(TextId::FileUnreadable, path));
        return false;
    }
    m_loading = true;
    DiscardEdit();
    ReleaseAndForgetVars();
    m_modified = false;
    bool listFull = false;
    for (std::size_t i = 0; i < lines->size() && !listFull; ++i) {
        LoadLine((*lines)[i], listFull);
    }
    m_pGrid->InitShowVars();
    m_loading = false;
    return true;
}

void PlcVarPanel::LoadLine(const wxString& line, bool& listFull)
{
    std::optional<ListLine> parsed = ParseListLine(line);
    if (!parsed || !parsed->var.CheckVarAddress(parsed->address, true) || !parsed->valid) {
        return;
    }
    if (m_vars.size() > MAX_WATCH_VARS) {
        listFull = true;
        m_modified = true;
        ShowMessage(TextId::ListFileCaption, LanguageText(TextId::ListFull, MAX_WATCH_VARS));
        return;
    }
    parsed->var.address = parsed->address;
    parsed->var.requestId = m_nextVarId++;
    m_vars.push_back(parsed->var);
    SendReadVarRequest(parsed->var);
}

void PlcVarPanel::SaveFile(const wxString& path)
{
    WriteListFile(path, ListFileText(m_vars));
    m_modified = false;
}

void PlcVarPanel::AnswerReadVarRequest(const CMD_DATA& answer)
{
    const auto var = FindVar(answer.key);
    if (var == m_vars.end()) {
        return;
    }
    const std::int32_t answered = PlcAnsweredValue(&answer);
    if (answered != var->value) {
        var->SetVarValue(answered);
    }
    m_pGrid->UpdateShowVars(*var);
    m_pGrid->FitColumnsToAnswer();
}

void PlcVarPanel::FinishVarRequest()
{
    SendDeleteVarRequest(m_vars.cbegin(), m_vars.cend());
}

void PlcVarPanel::ReleaseAndForgetVars()
{
    const Vars leaving = std::exchange(m_vars, {});
    SendDeleteVarRequest(leaving.cbegin(), leaving.cend());
}

// The host may do anything inside a callback, also make the list change. So requests are built
// before the first of them leaves, and nothing of the list is touched afterwards.

void PlcVarPanel::SendReadVarRequest(const PlcDebugVar& var) const
{
    const CMD_DATA read = var.GetVarCMD(eReadVar, PLC_DELETE_ARG_RELEASE);
    const CMD_DATA start = var.GetVarCMD(eDeleteVar, PLC_DELETE_ARG_START);
    CallHost(m_init.pfnReadVarRequest, read);
    CallHost(m_init.pfnDeleteVarRequest, start);
}

void PlcVarPanel::SendDeleteVarRequest(Vars::const_iterator first, Vars::const_iterator last) const
{
    std::vector<CMD_DATA> releases;
    std::transform(first, last, std::back_inserter(releases), [](const PlcDebugVar& var) {
        return var.GetVarCMD(eDeleteVar, PLC_DELETE_ARG_RELEASE);
    });
    for (const CMD_DATA& release : releases) {
        CallHost(m_init.pfnDeleteVarRequest, release);
    }
}

void PlcVarPanel::SendWriteVarRequest(const PlcDebugVar& var) const
{
    CallHost(m_init.pfnWriteVarRequest, var.GetVarCMD(eWriteVar, PLC_DELETE_ARG_RELEASE));
}

void PlcVarPanel::DiscardEdit()
{
    m_pGrid->DiscardEdit();
}

bool PlcVarPanel::IsCommitting(const wxWindow* control)
{
    return control != nullptr &&
           (control->GetId() == ID_VAR_DEFINE || control->GetId() == ID_VAR_MODIFY);
}

void PlcVarPanel::Disconnect()
{
    m_init = {};
}

void PlcVarPanel::WriteErrorInStatus(const wxString& text)
{
    m_pFrame->SetStatusText(text, 0);
}

PlcVarPanel::Vars::iterator PlcVarPanel::FindVar(std::uint16_t requestId)
{
    return std::find_if(m_vars.begin(), m_vars.end(), [requestId](const PlcDebugVar& var) {
        return var.requestId == requestId;
    });
}

PlcDebugVar PlcVarPanel::TemplateVar() const
{
    const std::vector<RowBlock> selected = m_pGrid->SelectedRows();
    if (!selected.empty() && selected.front().first < m_vars.size()) {
        return m_vars[selected.front().first];
    }
    return m_vars.empty() ? PlcDebugVar() : m_vars.front();
}

void PlcVarPanel::OnButtonDefine(wxCommandEvent& /*event*/)
{
    WriteErrorInStatus("");
    m_pGrid->CommitEdit();
    PlcDebugVar var = TemplateVar();
    PlcVarSettingDlg dialog(this, var, LanguageText(TextId::SettingsTitleDefine));
    if (RunModal(dialog) != wxID_OK) {
        return;
    }
    if (m_vars.size() >= MAX_WATCH_VARS) {
        ShowMessage(TextId::ErrorCaption, LanguageText(TextId::ListFull, MAX_WATCH_VARS));
        return;
    }
    AddVar(var);
}

void PlcVarPanel::AddVar(PlcDebugVar& var)
{
    var.requestId = m_nextVarId++;
    m_vars.push_back(var);
    m_pGrid->UpdateShowVars(var);
    // The value that came with the template is another operand's.
    m_pGrid->ShowUnknownValue(m_vars.size() - 1);
    m_modified = true;
    m_pGrid->FitColumns();
    SendReadVarRequest(var);
    m_pGrid->SetFocus();
}

void PlcVarPanel::OnButtonModify(wxCommandEvent& /*event*/)
{
    WriteErrorInStatus("");
    m_pGrid->CommitEdit();
    const std::vector<RowBlock> selected = m_pGrid->SelectedRows();
    const std::optional<std::size_t> row = OnlyRow(selected);
    if (!row) {
        ShowMessage(
            TextId::ErrorCaption,
            LanguageText(selected.empty() ? TextId::ModifyNoneSelected : TextId::ModifyOneOnly));
        return;
    }
    if (*row >= m_vars.size()) {
        return;
    }
    PlcDebugVar var = m_vars[*row];
    PlcVarSettingDlg dialog(this, var, LanguageText(TextId::SettingsTitleModify));
    if (RunModal(dialog) == wxID_OK) {
        ReplaceVar(var);
    }
}

void PlcVarPanel::ReplaceVar(const PlcDebugVar& var)
{
    const auto old = FindVar(var.requestId);
    if (old == m_vars.end()) {
        return;
    }
    SendDeleteVarRequest(old, old + 1);

    const auto element = FindVar(var.requestId); // the host had the word meanwhile
    if (element == m_vars.end()) {
        return;
    }
    const std::int32_t lastKnownValue = element->value; // newer than the one the dialog began with
    *element = var;
    element->value = lastKnownValue;
    m_pGrid->UpdateShowVars(*element);
    m_modified = true;
    m_pGrid->FitColumns();
    SendReadVarRequest(var);
    m_pGrid->SetFocus();
}

void PlcVarPanel::OnButtonDelete(wxCommandEvent& /*event*/)
{
    WriteErrorInStatus("");
    const std::vector<RowBlock> selected = m_pGrid->SelectedRows();
    if (selected.empty()) {
        ShowMessage(TextId::ErrorCaption, LanguageText(TextId::DeleteNoneSelected));
        return;
    }
    // Deleting rows would commit an open editor, into the variable that takes the row's place.
    DiscardEdit();
    // By id, since every deletion and every callback may shift the rows.
    std::vector<std::vector<std::uint16_t>> blocks;
    for (const RowBlock& rows : selected) {
        std::vector<std::uint16_t>& block = blocks.emplace_back();
        for (std::size_t row = rows.first; row <= rows.last && row < m_vars.size(); ++row) {
            block.push_back(m_vars[row].requestId);
        }
    }
    for (const std::vector<std::uint16_t>& block : blocks) {
        DeleteVars(block);
    }
    m_modified = true;
    m_pGrid->FitColumns();
}

void PlcVarPanel::DeleteVars(const std::vector<std::uint16_t>& requestIds)
{
    Vars leaving;
    for (const std::uint16_t requestId : requestIds) {
        const auto var = FindVar(requestId);
        if (var != m_vars.end()) // overlapping blocks name a variable twice
        {
            leaving.push_back(*var);
        }
    }
    SendDeleteVarRequest(leaving.cbegin(), leaving.cend());
    for (const PlcDebugVar& gone : leaving) {
        const auto var = FindVar(gone.requestId);
        if (var != m_vars.end()) {
            const auto row = static_cast<std::size_t>(var - m_vars.begin());
            m_vars.erase(var);
            m_pGrid->DeleteRow(row);
        }
    }
}
