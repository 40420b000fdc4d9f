#pragma once

#include "plcvargrid_table.h"

#include <wx/grid.h>

#include <array>

/// All that the widths of the columns depend on, and the widths themselves. In pixels.
struct ColumnsFit
{
    int virtualWidth = 0; ///< Of the grid, before the columns were fitted.
    wxFont cellFont;
    wxFont labelFont;
    std::array<wxString, varColumnCount> labels;
    std::array<int, 2> widestTexts{}; ///< Of operands and values.
    std::array<int, varColumnCount> columnWidths{};

    bool operator==(const ColumnsFit& other) const;
};

/// @param widestTexts of operands and values.
/// @return the widths of a watch list as they are now, with what they depend on. GUI thread.
ColumnsFit FitOf(const wxGrid& grid, const std::array<int, 2>& widestTexts);
