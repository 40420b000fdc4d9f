#pragma once

#include "plcprgpanel_file.h"

#include <functional>
#include <optional>
#include <vector>

// Which rows are on screen, and which of them are asked for. No windows. Any thread.

constexpr int noRow = -1;

/// Rows first to last; none when first > last.
struct RowRange
{
    int first;
    int last;
};

/// Narrows the search for visible rows by the scroll position; all rows are equally high.
/// @param scrollTop pixels that are scrolled out at the top.
/// @return every row that may be visible, and a few more.
RowRange RowsNearWindow(int scrollTop, int windowHeight, int rowHeight, int rowCount);

/// @param near rows outside are known to be invisible; inside the lines.
/// @param isVisible tells of a row whether at least a part of it is visible.
/// @return the rows of the unbroken visible stretch of executable lines, from its first executable
///         line to the last one, of which at most PLC_MAX_STEPS count; nothing when no
///         executable line is visible.
std::optional<RowRange> RowsToRequest(
    const std::vector<DB_BAUSTEIN>& lines,
    const RowRange& near,
    const std::function<bool(int)>& isVisible);
