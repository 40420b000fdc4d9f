#pragma once

#include "plclist_shown.h"
#include "plcprgpanel_file.h"

#include <wx/grid.h>

#include <array>
#include <vector>

/// The columns of the program grid.
enum PrgColumn : int
{
    PrgColumnState,
    PrgColumnValue,
    PrgColumnText,
    PrgColumnCount
};

/// The cells of the program grid, one row per listing line. State and value are what was last
/// handed over; only the text is read from the lines themselves. GUI thread.
class PlcPrgTable : public wxGridTableBase
{
public:
    /// @param lines outlive the table.
    explicit PlcPrgTable(const std::vector<DB_BAUSTEIN>& lines);

    /// Rebuilds all rows from the lines.
    void ShowLines();

    /// Shows state and value of a line as they are now.
    /// @param row one of lines and table.
    /// @return true when that changes what the row shows.
    bool ShowState(int row, const DB_BAUSTEIN& line);

    int GetNumberRows() override;
    int GetNumberCols() override;
    wxString GetValue(int row, int col) override;
    /// Does nothing: the operator changes no cell.
    void SetValue(int row, int col, const wxString& value) override;
    wxString GetColLabelValue(int col) override;
    void SetColLabelValue(int col, const wxString& label) override;
    /// The toolkit asks the renderer for a column's width instead of measuring cell by cell.
    bool CanMeasureColUsingSameAttr(int col) const override;

    /// @return what the column of states or values shows.
    ShownColumn& Shown(PrgColumn column);

private:
    void Notify(int id, std::size_t argument1, std::size_t argument2);

    const std::vector<DB_BAUSTEIN>& m_lines; // not owned
    ShownColumn m_states;
    ShownColumn m_values;
    std::array<wxString, PrgColumnCount> m_labels;
};
