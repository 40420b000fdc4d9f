#pragma once

#include <cstddef>
#include <vector>

// Arithmetic of rows and columns. No windows. Any thread.

/// Rows @c first to @c last, inclusive.
struct RowBlock
{
    std::size_t first;
    std::size_t last;
};

/// The width that a grid's last column asks for: what the first two columns leave of the grid, less
/// a margin that is subtracted last, so that it is negative when they leave nothing. All in pixels.
int LastColumnWidth(int virtualWidth, int firstWidth, int secondWidth);

/// @return the runs of selected rows, ascending, after @p row was added or, if it was selected
///         already, taken away.
std::vector<RowBlock> ToggledRows(const std::vector<RowBlock>& selected, std::size_t row);
