#include "literal_varpage.h"

#include "literal_columns.h"

#include <wx/sizer.h>

#include <algorithm>

namespace literal {

namespace {

constexpr int border = 5;

} // namespace

VarGrid::VarGrid(VarPage* page, std::vector<PlcDebugVar>& vars)
    : wxGrid(page, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS), m_page(page),
      m_vars(vars)
{
    EnableEditing(true);
    SetWindowStyle(wxSUNKEN_BORDER);
    SetDefaultCellAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
    SetRowLabelSize(0);
    CreateGrid(0, 3, wxGridSelectCells);
    SetColLabelValue(0, LanguageText(TextId::VarColumnOperand));
    SetColLabelValue(1, LanguageText(TextId::VarColumnValue));
    SetColLabelValue(2, LanguageText(TextId::VarColumnFormat));
    AutoSize();

    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        SizeColumns();
        event.Skip();
    });
    Bind(wxEVT_GRID_CELL_CHANGED, [this](wxGridEvent& event) {
        const auto row = static_cast<std::size_t>(event.GetRow());
        PlcDebugVar written = m_vars[row];
        wxString error;
        if (written.SetVarValue(GetCellValue(event.GetRow(), 1), error)) {
            m_page->SendWriteVarRequest(written);
        } else {
            m_page->WriteErrorInStatus(error);
        }
        RedisplayRow(event.GetRow());
    });
    Bind(wxEVT_GRID_EDITOR_HIDDEN, [this](wxGridEvent& event) {
        const int row = event.GetRow();
        const wxObjectDataPtr<wxGridCellEditor> editor(GetCellEditor(row, event.GetCol()));
        if (editor->GetValue() == GetCellValue(row, event.GetCol())) {
            RedisplayRow(row);
        }
        if (m_fitPending) {
            CallAfter([this] { SizeColumns(); });
        }
        event.Skip();
    });
    Bind(wxEVT_GRID_SELECT_CELL, [this](wxGridEvent& event) {
        if (!m_deletingRows) {
            SelectBlock(event.GetRow(), 0, event.GetRow(), GetNumberCols() - 1);
            m_page->WriteErrorInStatus("");
        }
        event.Skip();
    });
}

void VarGrid::InitShowVars()
{
    BeginBatch();
    ClearGrid();
    DeleteAllRows();
    for (std::size_t row = 0; row < m_vars.size(); ++row) {
        AppendRows(1);
        ShowRow(static_cast<int>(row), "?");
    }
    SetSelectionMode(wxGridSelectRows);
    EndBatch();
    SizeColumns();
}

void VarGrid::UpdateShowVars(const PlcDebugVar& var)
{
    BeginBatch();
    const auto element = std::find(m_vars.begin(), m_vars.end(), var);
    if (element != m_vars.end()) {
        const int row = static_cast<int>(element - m_vars.begin());
        if (row >= GetNumberRows()) {
            AppendRows(1);
        }
        if (!IsCellEditControlShown() || row != GetGridCursorRow()) {
            ShowRow(row, element->GetVarValueShow());
        }
    }
    EndBatch();
}

void VarGrid::RedisplayRow(int row)
{
    BeginBatch();
    ShowRow(row, m_vars[static_cast<std::size_t>(row)].GetVarValueShow());
    EndBatch();
}

void VarGrid::ShowRow(int row, const wxString& value)
{
    const PlcDebugVar& var = m_vars[static_cast<std::size_t>(row)];
    const wxString name = var.GetVarName(true);
    if (!name.empty()) {
        SetCellValue(row, 0, name);
        SetReadOnly(row, 0, true);
        SetCellValue(row, 1, value);
        SetReadOnly(row, 1, false);
        SetCellValue(row, 2, var.GetVarFormatShow());
        SetReadOnly(row, 2, true);
    }
}

void VarGrid::SizeColumns()
{
    m_fitPending = IsCellEditControlShown();
    if (m_fitPending) {
        return;
    }
    FitColumns(*this, GetVirtualSize().GetWidth());
    AdjustScrollbars();
}

void VarGrid::DeleteAllRows()
{
    if (const int rows = GetNumberRows(); rows > 0) {
        m_deletingRows = true;
        DeleteRows(0, rows);
        m_deletingRows = false;
    }
}

void VarGrid::DeleteRow(int row)
{
    m_deletingRows = true;
    DeleteRows(row, 1);
    m_deletingRows = false;
}

void VarGrid::DiscardEdit()
{
    if (IsCellEditControlEnabled()) {
        const wxObjectDataPtr<wxGridCellEditor> editor(
            GetCellEditor(GetGridCursorRow(), GetGridCursorCol()));
        editor->Reset();
        DisableCellEditControl();
    }
}

VarPage::VarPage(wxWindow* parent, const PLC_DBG_INIT& init, wxFrame* frame)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER),
      m_init(init), m_frame(frame), m_grid(new VarGrid(this, m_vars))
{
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_grid, wxSizerFlags(1).Expand().Border(wxALL, border));
    SetSizer(sizer);
}

void VarPage::Load(const std::vector<PlcDebugVar>& vars)
{
    m_grid->DiscardEdit();
    for (const PlcDebugVar& var : m_vars) {
        Release(var);
    }
    m_vars = vars;
    for (PlcDebugVar& var : m_vars) {
        var.requestId = m_nextVarId++;
        const CMD_DATA read = var.GetVarCMD(eReadVar, PLC_DELETE_ARG_RELEASE);
        const CMD_DATA start = var.GetVarCMD(eDeleteVar, PLC_DELETE_ARG_START);
        m_init.pfnReadVarRequest(&read);
        m_init.pfnDeleteVarRequest(&start);
    }
    m_grid->InitShowVars();
}

void VarPage::Reset()
{
    m_grid->DiscardEdit();
    for (const PlcDebugVar& var : m_vars) {
        Release(var);
    }
    m_vars.clear();
    m_grid->DeleteAllRows();
}

void VarPage::AnswerReadVarRequest(const CMD_DATA& answer)
{
    const auto var = std::find_if(m_vars.begin(), m_vars.end(), [&](const PlcDebugVar& element) {
        return element.requestId == answer.key;
    });
    if (var == m_vars.end()) {
        return;
    }
    const std::int32_t value = PlcAnsweredValue(&answer);
    if (value != var->value) {
        var->SetVarValue(value);
    }
    m_grid->UpdateShowVars(*var);
    m_grid->SizeColumns();
}

void VarPage::SendWriteVarRequest(const PlcDebugVar& var) const
{
    const CMD_DATA write = var.GetVarCMD(eWriteVar, PLC_DELETE_ARG_RELEASE);
    m_init.pfnWriteVarRequest(&write);
}

void VarPage::Delete(std::size_t row)
{
    WriteErrorInStatus("");
    m_grid->DiscardEdit();
    Release(m_vars[row]);
    m_vars.erase(m_vars.begin() + static_cast<std::ptrdiff_t>(row));
    m_grid->DeleteRow(static_cast<int>(row));
    m_grid->SizeColumns();
}

std::vector<std::uint16_t> VarPage::RequestIds() const
{
    std::vector<std::uint16_t> ids;
    for (const PlcDebugVar& var : m_vars) {
        ids.push_back(var.requestId);
    }
    return ids;
}

void VarPage::Release(const PlcDebugVar& var) const
{
    const CMD_DATA release = var.GetVarCMD(eDeleteVar, PLC_DELETE_ARG_RELEASE);
    m_init.pfnDeleteVarRequest(&release);
}

} // namespace literal
