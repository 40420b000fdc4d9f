#pragma once

#include <wx/grid.h>

/// Has the list tell a screen reader the row of its cursor as its own name, the cursor's cell
/// first: to GTK the cells are a picture. GUI thread.
void SpeakCursorsRow(wxGrid& grid);
