#pragma once

#include <cstddef>
#include <optional>
#include <vector>

// Arithmetic of rows. No windows. Any thread.

/// Rows @c first to @c last, inclusive.
struct RowBlock
{
    std::size_t first;
    std::size_t last;
};

/// @return the row, when the blocks are of that one alone.
std::optional<std::size_t> OnlyRow(const std::vector<RowBlock>& selected);

/// @return the runs of selected rows, ascending, after @p row was added or, if it was selected
///         already, taken away.
std::vector<RowBlock> ToggledRows(const std::vector<RowBlock>& selected, std::size_t row);
