#include "literal_columns.h"

#include "plclist_fit.h"

namespace literal {

void FitColumns(wxGrid& grid, int virtualWidth)
{
    const wxGridUpdateLocker batch(&grid);
    grid.AutoSizeColumn(0, true);
    grid.AutoSizeColumn(1, true);
    const int width = LastColumnWidth(virtualWidth, grid.GetColSize(0), grid.GetColSize(1));
    if (width > 0) {
        grid.SetColSize(2, width);
    }
}

} // namespace literal
