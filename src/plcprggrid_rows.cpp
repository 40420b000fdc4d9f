#include "plcprggrid_rows.h"

#include "plcdebug_host.h"

#include <algorithm>

namespace {

const DB_BAUSTEIN& LineOfRow(const std::vector<DB_BAUSTEIN>& lines, int row)
{
    return lines[static_cast<std::size_t>(row)];
}

bool IsExecutableRow(const std::vector<DB_BAUSTEIN>& lines, int row)
{
    return LineOfRow(lines, row).step != noStep;
}

int CapToMaxSteps(const std::vector<DB_BAUSTEIN>& lines, RowRange rows)
{
    const int endStep = LineOfRow(lines, rows.first).step + PLC_MAX_STEPS;
    while (rows.last > rows.first &&
           (!IsExecutableRow(lines, rows.last) || LineOfRow(lines, rows.last).step >= endStep)) {
        --rows.last;
    }
    return rows.last;
}

} // namespace

RowRange RowsNearWindow(int scrollTop, int windowHeight, int rowHeight, int rowCount)
{
    // A row that only touches the window's edge may count as visible.
    constexpr int edgeRows = 2;
    const int bottom = scrollTop + windowHeight;
    return {
        std::max(0, scrollTop / rowHeight - edgeRows),
        std::min(rowCount - 1, bottom / rowHeight + edgeRows)};
}

std::optional<RowRange> RowsToRequest(
    const std::vector<DB_BAUSTEIN>& lines,
    const RowRange& near,
    const std::function<bool(int)>& isVisible)
{
    RowRange rows{noRow, noRow};
    for (int row = near.first; row <= near.last; ++row) {
        if (IsExecutableRow(lines, row)) {
            if (isVisible(row)) {
                rows = {rows.first == noRow ? row : rows.first, row};
            } else if (rows.first != noRow) {
                break;
            }
        }
    }
    if (rows.first == noRow) {
        return std::nullopt;
    }
    return RowRange{rows.first, CapToMaxSteps(lines, rows)};
}
