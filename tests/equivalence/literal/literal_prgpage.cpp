#include "literal_prgpage.h"

#include "literal_columns.h"
#include "plcintlang.h"
#include "plcprgpanel_state.h"

#include <wx/sizer.h>

namespace literal {

namespace {

constexpr int border = 10;

} // namespace

PrgGrid::PrgGrid(PrgPage* page, const std::vector<DB_BAUSTEIN>& lines)
    : wxGrid(page, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS), m_lines(lines),
      m_page(page)
{
    CreateGrid(0, 3, wxGridSelectCells);
    EnableEditing(false);
    SetWindowStyle(wxSUNKEN_BORDER);
    SetDefaultCellAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
    SetRowLabelSize(0);
    DisableDragRowSize();
    SetColLabelValue(0, LanguageText(TextId::PrgColumnState));
    SetColLabelValue(1, LanguageText(TextId::PrgColumnValue));
    SetColLabelValue(2, LanguageText(TextId::PrgColumnText));

    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        SizeColumns();
        event.Skip();
    });
    const auto scrolled = [this](wxScrollWinEvent& event) {
        scrollPending = scrollPending || event.GetOrientation() == wxVERTICAL;
        event.Skip();
    };
    for (const auto& type :
         {wxEVT_SCROLLWIN_TOP,
          wxEVT_SCROLLWIN_BOTTOM,
          wxEVT_SCROLLWIN_LINEUP,
          wxEVT_SCROLLWIN_LINEDOWN,
          wxEVT_SCROLLWIN_PAGEUP,
          wxEVT_SCROLLWIN_PAGEDOWN,
          wxEVT_SCROLLWIN_THUMBTRACK,
          wxEVT_SCROLLWIN_THUMBRELEASE}) {
        Bind(type, scrolled);
    }
    Bind(wxEVT_GRID_SELECT_CELL, [this](wxGridEvent& event) {
        scrollPending = true;
        event.Skip();
    });
}

void PrgGrid::InitShowBS()
{
    BeginBatch();
    ClearGrid();
    if (GetNumberRows() > 0) {
        DeleteRows(0, GetNumberRows());
    }
    for (const DB_BAUSTEIN& line : m_lines) {
        AppendRows(1);
        const int row = GetNumberRows() - 1;
        SetCellValue(row, 0, line.state);
        SetCellValue(row, 1, line.value);
        SetCellValue(row, 2, line.text);
    }
    EndBatch();
    AdjustScrollbars();
    ClearIdxRequestRows();
}

void PrgGrid::UpdateShowBS()
{
    BeginBatch();
    for (int row = m_requested.first; row != -1 && row <= m_requested.last; ++row) {
        const DB_BAUSTEIN& line = m_lines.at(static_cast<std::size_t>(row));
        SetCellValue(row, 0, line.state);
        SetCellValue(row, 1, line.value);
    }
    EndBatch();
}

Rows PrgGrid::FindVisibleRows() const
{
    return VisibleRows(m_lines, [this](int row) { return IsRowVisible(row); });
}

void PrgGrid::DoPrgStateRequest()
{
    if (!m_page->IsShownOnScreen()) {
        return;
    }
    const Rows rows = FindVisibleRows();
    if (rows == Rows() || rows == m_requested) {
        m_requested = rows;
        return;
    }
    m_requested = rows;
    m_page->SendPrgStateRequest(
        m_lines.at(static_cast<std::size_t>(rows.first)).step,
        m_lines.at(static_cast<std::size_t>(rows.last)).step);
}

void PrgGrid::SizeColumns()
{
    FitColumns(*this, DoGetVirtualSize().x);
    DoPrgStateRequest();
}

bool PrgGrid::IsRowVisible(int row) const
{
    return IsVisible(row, 0, false) || IsVisible(row, 1, false) || IsVisible(row, 2, false);
}

PrgPage::PrgPage(wxWindow* parent, const PLC_DBG_INIT& init)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER),
      m_init(init), m_fileName(std::string(init.szPath) + "_plcdbgi.dat"),
      m_blocks(ReadBlockIndex(OpenPrgFile(m_fileName).get())), m_grid(new PrgGrid(this, m_lines))
{
    LoadBS(0);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_grid, wxSizerFlags(1).Expand().Border(wxALL, border));
    SetSizer(sizer);
}

void PrgPage::LoadBS(int index)
{
    const PrgFile file = OpenPrgFile(m_fileName);
    m_lines = ReadLines(file.get(), m_blocks.at(static_cast<std::size_t>(index)));
    m_grid->InitShowBS();
}

void PrgPage::ChooseBlock(int index)
{
    LoadBS(index);
    m_grid->DoPrgStateRequest();
}

void PrgPage::SendPrgStateRequest(int first, int last)
{
    if (first == m_firstStep && last == m_lastStep) {
        return;
    }
    const CMD_DATA request = PrgStateRequest(first, last);
    m_init.pfnPrgStateRequest(&request);
    m_firstStep = first;
    m_lastStep = last;
}

void PrgPage::FinishPrgStateRequest()
{
    if (m_firstStep != noStep && m_lastStep != noStep) {
        SendPrgStateRequest(noStep, noStep);
        m_grid->ClearIdxRequestRows();
    }
}

void PrgPage::OnScrollSendRequest()
{
    if (m_grid->scrollPending) {
        m_grid->DoPrgStateRequest();
        m_grid->scrollPending = false;
    }
}

void PrgPage::AnswerPrgState(const CMD_DATA& answer)
{
    if (m_firstStep == noStep || PlcFirstStep(&answer) != m_firstStep ||
        PlcLastStep(&answer) != m_lastStep) {
        return;
    }
    ApplyAnswer(answer, m_lines);
    m_grid->UpdateShowBS();
}

} // namespace literal
