#pragma once

#include <cstddef>
#include <vector>

// Arithmetic of rows. No windows. Any thread.

/// Rows @c first to @c last, inclusive.
struct RowBlock
{
    std::size_t first;
    std::size_t last;
};

/// @return the runs of selected rows, ascending, after @p row was added or, if it was selected
///         already, taken away.
std::vector<RowBlock> ToggledRows(const std::vector<RowBlock>& selected, std::size_t row);
