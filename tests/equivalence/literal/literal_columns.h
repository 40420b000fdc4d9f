#pragma once

#include <wx/grid.h>

namespace literal {

/// Measures the first two columns cell by cell and gives the last one the rest. GUI thread.
/// @param virtualWidth of the grid, in pixels.
void FitColumns(wxGrid& grid, int virtualWidth);

} // namespace literal
