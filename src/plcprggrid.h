#pragma once

#include "plcprggrid_rows.h"
#include "plcprgpanel_file.h"

#include <wx/grid.h>

#include <optional>
#include <vector>

class PlcPrgPanel;
class PlcPrgTable;

/// The listing of the block on show, one row per line, for reading only. It knows which executable
/// lines are on screen, and has the page ask for their states. GUI thread.
class PlcPrgGrid : public wxGrid
{
public:
    /// @param panel the page, parent of the grid.
    /// @param lines the page's; they outlive the grid.
    PlcPrgGrid(PlcPrgPanel* panel, const std::vector<DB_BAUSTEIN>& lines);

    /// Rebuilds all rows from the lines, and forgets which were requested.
    void InitShowBS();

    /// Shows state and value of the requested rows as the lines have them now.
    /// @throws std::out_of_range when a requested row is none of the lines.
    void UpdateShowBS();

    /// Requests the executable lines on screen unless they are those requested already. Does
    /// nothing while the page is not on screen or no executable line is.
    void DoPrgStateRequest();

    /// Forgets which rows were requested.
    void ClearIdxRequestRows();

    /// Notes that other rows may have come on screen.
    void SetScrollPending() { scrollPending = true; }

    /// @return whether other rows may have come on screen since the last call.
    bool TakeScrollPending();

private:
    void FillClientArea();

    void OnSize(wxSizeEvent& event);
    void OnScroll(wxScrollWinEvent& event);
    void OnSelectCell(wxGridEvent& event);

    std::optional<RowRange> VisibleRows() const;
    bool IsRowVisible(int row) const;

    const std::vector<DB_BAUSTEIN>& m_lines; // not owned
    PlcPrgPanel* m_pPanel;                   // not owned, the parent
    PlcPrgTable* m_pTable;                   // owned by the grid's base
    int reqFirstRow = noRow;
    int reqLastRow = noRow;
    bool scrollPending = false;

    wxDECLARE_EVENT_TABLE();
};
