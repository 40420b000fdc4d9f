#pragma once

#include <wx/grid.h>

/// Shows the whole text of the cell under the pointer in a tool tip, where the cell is too narrow
/// for it. The tip follows the text when that changes under a resting pointer. GUI thread.
void ShowCutTextsInTips(wxGrid& grid);
