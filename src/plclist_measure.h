#pragma once

#include "plclist_shown.h"

#include <wx/grid.h>

/// @return a new attribute for a whole column, by which the toolkit finds the column's width from
///         its different texts, instead of measuring cell by cell. The column's table has to
///         answer CanMeasureColUsingSameAttr() with true. GUI thread.
/// @param shown what the column shows; outlives the attribute.
wxGridCellAttr* NewMeasuringAttr(ShownColumn& shown);
