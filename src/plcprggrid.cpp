#include "plcprggrid.h"

#include "plclist.h"
#include "plclist_head.h"
#include "plclist_measure.h"
#include "plcprggrid_table.h"
#include "plcprgpanel.h"

#include <utility>

namespace {

/// @return the system's font of letters that are all equally wide, as large as @p font.
wxFont FixedPitch(const wxFont& font)
{
    return wxFontInfo(font.GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE);
}

} // namespace

wxBEGIN_EVENT_TABLE(PlcPrgGrid, wxGrid)
    EVT_SIZE(PlcPrgGrid::OnSize)
    EVT_SCROLLWIN_TOP(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_BOTTOM(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_LINEUP(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_LINEDOWN(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_PAGEUP(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_PAGEDOWN(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_THUMBTRACK(PlcPrgGrid::OnScroll)
    EVT_SCROLLWIN_THUMBRELEASE(PlcPrgGrid::OnScroll)
    EVT_GRID_SELECT_CELL(PlcPrgGrid::OnSelectCell)
wxEND_EVENT_TABLE()

PlcPrgGrid::PlcPrgGrid(PlcPrgPanel* panel, const std::vector<DB_BAUSTEIN>& lines)
    : wxGrid(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS), m_lines(lines),
      m_pPanel(panel), m_pTable(new PlcPrgTable(lines))
{
    m_pTable->SetAttrProvider(new ListAttrProvider);
    AssignTable(m_pTable, wxGridSelectCells);
    SetColAttr(PrgColumnState, NewMeasuringAttr(m_pTable->Shown(PrgColumnState)));
    SetColAttr(PrgColumnValue, NewMeasuringAttr(m_pTable->Shown(PrgColumnValue)));
    auto* listing = new wxGridCellAttr; // operands stand below each other
    listing->SetFont(FixedPitch(GetDefaultCellFont()));
    SetColAttr(PrgColumnText, listing);
    EnableEditing(false);
    SetUpList(*this);
    DisableDragRowSize();
}

void PlcPrgGrid::InitShowBS()
{
    {
        const wxGridUpdateLocker batch(this);
        m_pTable->ShowLines();
    }
    AdjustScrollbars();
    ClearIdxRequestRows();
}

void PlcPrgGrid::UpdateShowBS()
{
    for (int row = reqFirstRow; row != noRow && row <= reqLastRow; ++row) {
        // Repainting only what has changed is what keeps a still page cheap.
        if (m_pTable->ShowState(row, m_lines.at(static_cast<std::size_t>(row)))) {
            RefreshBlock(row, PrgColumnState, row, PrgColumnValue);
        }
    }
    FillClientArea();
}

void PlcPrgGrid::FillClientArea()
{
    // The client area changes with the border, which comes and goes without a size event: then only
    // the end of a batch fits the cells into it. Without need a batch would repaint the whole grid.
    wxSize cells = GetClientSize() - wxSize(GetRowLabelSize(), GetColLabelSize());
    cells.IncTo(wxSize(0, 0));
    if (GetGridWindow()->GetSize() != cells) {
        const wxGridUpdateLocker batch(this);
    }
}

void PlcPrgGrid::DoPrgStateRequest()
{
    // A page that is selected in a hidden frame still counts as shown.
    if (!m_pPanel->IsShownOnScreen()) {
        return;
    }
    const std::optional<RowRange> rows = VisibleRows();
    if (!rows) {
        ClearIdxRequestRows();
        return;
    }
    if (rows->first == reqFirstRow && rows->last == reqLastRow) {
        return;
    }
    // The host may run a loop inside the request, in which another block is chosen: the rows are
    // noted before.
    reqFirstRow = rows->first;
    reqLastRow = rows->last;
    m_pPanel->SendPrgStateRequest(
        m_lines[static_cast<std::size_t>(rows->first)].step,
        m_lines[static_cast<std::size_t>(rows->last)].step);
}

void PlcPrgGrid::ClearIdxRequestRows()
{
    reqFirstRow = noRow;
    reqLastRow = noRow;
}

bool PlcPrgGrid::TakeScrollPending()
{
    return std::exchange(scrollPending, false);
}

void PlcPrgGrid::OnSize(wxSizeEvent& event)
{
    FitListColumns(*this);
    DoPrgStateRequest();
    event.Skip();
}

void PlcPrgGrid::OnScroll(wxScrollWinEvent& event)
{
    if (event.GetOrientation() == wxVERTICAL) {
        SetScrollPending();
    }
    event.Skip();
}

void PlcPrgGrid::OnSelectCell(wxGridEvent& event)
{
    SetScrollPending();
    event.Skip();
}

std::optional<RowRange> PlcPrgGrid::VisibleRows() const
{
    const int scrollTop = CalcUnscrolledPosition(wxPoint(0, 0)).y;
    const int windowHeight = GetGridWindow()->GetClientSize().y;
    const RowRange near = RowsNearWindow(
        scrollTop, windowHeight, GetDefaultRowSize(), static_cast<int>(m_lines.size()));
    return RowsToRequest(m_lines, near, [this](int row) { return IsRowVisible(row); });
}

bool PlcPrgGrid::IsRowVisible(int row) const
{
    return IsVisible(row, PrgColumnState, false) || IsVisible(row, PrgColumnValue, false) ||
           IsVisible(row, PrgColumnText, false);
}
