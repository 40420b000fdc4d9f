#pragma once

#include "plcdebugvar.h"
#include "plclist_shown.h"

#include <wx/grid.h>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

/// Columns of the watch list.
enum : int
{
    varColumnOperand = 0,
    varColumnValue = 1,
    varColumnFormat = 2,
    varColumnCount = 3
};

/// The cells of the watch list. It knows of each row which variable it shows, so that an answer
/// that changes nothing costs next to nothing. GUI thread.
class PlcVarTable : public wxGridStringTable
{
public:
    PlcVarTable();

    /// Notes that the cells of a row have just been filled from @p var.
    void NoteShown(std::size_t row, const PlcDebugVar& var);

    /// @return true when operand and value of the row are those of @p var, and nothing has been
    ///         written into the row since.
    bool Shows(std::size_t row, const PlcDebugVar& var) const;

    /// @param column operand or value.
    /// @return what the column shows.
    ShownColumn& Shown(int column);

    void SetValue(int row, int col, const wxString& value) override;
    void Clear() override;
    bool AppendRows(std::size_t rowCount) override;
    bool DeleteRows(std::size_t row, std::size_t rowCount) override;
    /// The toolkit asks the renderer for a column's width instead of measuring cell by cell.
    bool CanMeasureColUsingSameAttr(int col) const override;

private:
    std::array<ShownColumn, 2> m_shown; ///< Operands and values.
    std::vector<std::optional<PlcDebugVar>> m_vars;
};
