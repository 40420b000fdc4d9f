#pragma once

#include <wx/frame.h>
#include <wx/grid.h>

// A grid in a frame of the test's own, moved by calls and not by an operator. GUI thread.

/// A frame on the screen with nothing in it but a status line.
wxFrame* ShownFrame(const wxString& title);

/// Scrolls so that a row is the upper one, as far as there are rows; sends no event.
void ScrollToRow(wxGrid& grid, int row);

/// Sends a grid a size event with the size that it has.
void SendSize(wxGrid& grid);
