#pragma once

#include <wx/grid.h>

/// Gives a grid the look that both pages' lists share. Before its window is shown; GUI thread.
void ApplyListLook(wxGrid& grid);
