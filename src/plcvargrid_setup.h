#pragma once

#include <wx/grid.h>

/// Gives a grid the look and the behaviour that both pages' lists share. Before its window is
/// shown; GUI thread.
void SetUpList(wxGrid& grid);
