#pragma once

#include "plcdebugvar.h"
#include "plclist_numbers.h"
#include "plcvargrid_fit.h"
#include "plcvargrid_rows.h"
#include "plcvargrid_table.h"

#include <wx/dcclient.h>
#include <wx/grid.h>
#include <wx/timer.h>

#include <cstddef>
#include <optional>
#include <vector>

class PlcVarPanel;
class ValueEditor;

/// The watch list's table: operand, value, format; one row per variable. It reads the page's list
/// and calls the page for everything that changes list or PLC. GUI thread.
class PlcVarGrid : public wxGrid
{
public:
    /// @param vars the page's list; not owned, outlives the grid.
    PlcVarGrid(PlcVarPanel* panel, std::vector<PlcDebugVar>& vars);

    /// Rebuilds all rows from the list.
    void InitShowVars();

    /// Shows a variable in its row, which is appended if need be. The row that the operator is
    /// editing stays as it is.
    /// @param var an element of the list, or one equal to it.
    void UpdateShowVars(const PlcDebugVar& var);

    /// Shows that the value of a row is not known.
    void ShowUnknownValue(std::size_t row);

    /// Makes the first two columns as wide as their contents and the last one as wide as the page
    /// allows. While a cell is being edited it only makes a note, because resizing a column would
    /// send the half-typed value to the machine.
    void FitColumns();

    /// The same, where only an answer may have changed what the columns have to hold.
    void FitColumnsToAnswer();

    /// Throws away what the operator is typing.
    void DiscardEdit();

    /// Sends what the operator is typing, as Return does.
    void CommitEdit();

    void DeleteRow(std::size_t row);
    void DeleteAllRows();

    /// @return the blocks of selected rows, in the order of their selection.
    std::vector<RowBlock> SelectedRows() const;

    void ScrollWindow(int dx, int dy, const wxRect* rect) override;

private:
    void ShowRow(std::size_t row);
    void CountEditorIn();
    void ShowCell(int row, int column, const wxString& text);
    void SelectRows(const std::vector<RowBlock>& rows);
    bool IsEditedRow(std::size_t row) const;
    void EnterPressed();
    void KeepSelection();
    void EndEditThatWasLeft();
    ColumnsFit CurrentFit();
    int WidestText(int column);
    wxDC& MeasuringDc();

    void OnSize(wxSizeEvent& event);
    void OnChangeValue(wxGridEvent& event);
    void OnEditorHidden(wxGridEvent& event);
    void OnSelectCell(wxGridEvent& event);
    void OnLeftClick(wxGridEvent& event);
    void OnLeftDoubleClick(wxGridEvent& event);
    void OnSlowClick(wxTimerEvent& event);
    void OnKeyPressed(wxKeyEvent& event);
    void OnKeyAnywhere(wxKeyEvent& event);
    void OnWheel(wxMouseEvent& event);
    void OnScroll(wxScrollWinEvent& event);
    void OnPressOnLabels(wxMouseEvent& event);

    PlcVarPanel* m_pPanel;            // not owned, the parent
    std::vector<PlcDebugVar>& m_vars; // not owned, the page's
    PlcVarTable* m_pTable;            // owned by the grid's base
    ValueEditor* m_pEditor = nullptr; // owned by the attribute of the value column
    ColumnsFit m_fit;                 ///< As FitColumns() has left it.
    NumberGlyphs m_numbers;           ///< Of the cells' font, for measuring.
    /// To set one up costs half as much as to measure a text: the answers of one tick share it.
    std::optional<wxClientDC> m_measuringDc;
    wxTimer m_slowClickTimer; ///< Runs until a click can no longer become a double click.
    wxTimer m_menuTimer;      ///< Runs while a menu holds the keyboard of the editor.
    bool m_menuSeen = false;
    bool m_deletingRows = false;
    bool m_fitPending = false;
    bool m_editorCounted = false; ///< The virtual size has room for an editor.
    bool m_keepStatus = false;    ///< The key or click under way has had an error shown.

    wxDECLARE_EVENT_TABLE();
};
