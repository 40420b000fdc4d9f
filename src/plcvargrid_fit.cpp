#include "plcvargrid_fit.h"

#include <tuple>

bool ColumnsFit::operator==(const ColumnsFit& other) const
{
    const auto all = [](const ColumnsFit& fit) {
        return std::tie(
            fit.virtualWidth,
            fit.widestTexts,
            fit.columnWidths,
            fit.cellFont,
            fit.labelFont,
            fit.labels);
    };
    return all(*this) == all(other);
}

ColumnsFit FitOf(const wxGrid& grid, const std::array<int, 2>& widestTexts)
{
    ColumnsFit fit;
    fit.virtualWidth = grid.GetVirtualSize().GetWidth();
    fit.cellFont = grid.GetDefaultCellFont();
    fit.labelFont = grid.GetLabelFont();
    for (int column = 0; column < varColumnCount; ++column) {
        const auto position = static_cast<std::size_t>(column);
        fit.labels[position] = grid.GetColLabelValue(column);
        fit.columnWidths[position] = grid.GetColSize(column);
    }
    fit.widestTexts = widestTexts;
    return fit;
}
