#pragma once

#include "plcdebug_host.h"
#include "plcprgpanel_file.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// The listing of the block on show, taken literally. No windows. One thread at a time.

namespace literal {

/// Rows first to last; -1 to -1 for none.
struct Rows
{
    int first = -1;
    int last = -1;

    bool operator==(const Rows& other) const { return first == other.first && last == other.last; }
};

/// Reads the lines of a block.
std::vector<DB_BAUSTEIN> ReadLines(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block);

/// Looks at the rows from the first one on.
/// @param isVisible tells of a row whether at least a part of it is on screen.
/// @return the rows to request.
Rows VisibleRows(const std::vector<DB_BAUSTEIN>& lines, const std::function<bool(int)>& isVisible);

/// Writes an answer's states and values into the lines, each found by a search from the first line
/// on.
void ApplyAnswer(const CMD_DATA& answer, std::vector<DB_BAUSTEIN>& lines);

} // namespace literal
