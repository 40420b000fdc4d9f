#pragma once

#include <wx/grid.h>

// What the lists of both pages have in common. GUI thread.

/// Gives a grid the look and the behaviour of a list. Before its window is shown.
void SetUpList(wxGrid& grid);

/// @return true when the list moves its cursor to the row's next cell at Tab, or to the one before
///         at Shift+Tab, or commits what is being typed. Else the keyboard leaves the list.
bool KeepsTab(const wxGrid& grid, bool forward);

/// Makes the first two of a list's three columns as wide as their contents, and the last one as
/// wide as the list allows.
/// @return the virtual width of the list before, of which the last column took what was left.
int FitListColumns(wxGrid& grid);
