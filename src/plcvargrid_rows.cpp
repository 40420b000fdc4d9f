#include "plcvargrid_rows.h"

#include <algorithm>

std::optional<std::size_t> OnlyRow(const std::vector<RowBlock>& selected)
{
    if (selected.size() != 1 || selected.front().first != selected.front().last) {
        return std::nullopt;
    }
    return selected.front().first;
}

std::vector<RowBlock> ToggledRows(const std::vector<RowBlock>& selected, std::size_t row)
{
    std::size_t rowCount = row + 1;
    for (const RowBlock& rows : selected) {
        rowCount = std::max(rowCount, rows.last + 1);
    }
    std::vector<bool> isSelected(rowCount);
    for (const RowBlock& rows : selected) {
        std::fill_n(
            isSelected.begin() + static_cast<std::ptrdiff_t>(rows.first),
            rows.last - rows.first + 1,
            true);
    }
    isSelected[row] = !isSelected[row];

    std::vector<RowBlock> runs;
    for (std::size_t i = 0; i < rowCount; ++i) {
        if (isSelected[i] && (i == 0 || !isSelected[i - 1])) {
            runs.push_back({i, i});
        } else if (isSelected[i]) {
            runs.back().last = i;
        }
    }
    return runs;
}
