#pragma once

#include <gtest/gtest.h>
#include <wx/combobox.h>
#include <wx/gdicmn.h>
#include <wx/grid.h>
#include <wx/notebook.h>
#include <wx/radiobox.h>
#include <wx/toplevel.h>

// The operator's hands: real input through the X server. What it leads to is there only after a
// WaitFor(). GUI thread.

/// Shows a window and waits until it is on the screen in the size that it has, and has the
/// keyboard.
/// @return a failure when that does not come about.
testing::AssertionResult ShowActive(wxTopLevelWindow& window);

/// Waits until a shown window is on the screen in this size, borders included, and has the
/// keyboard.
testing::AssertionResult BecomesActive(wxTopLevelWindow& window, const wxSize& size);

/// Gives a control the keyboard and waits until it has it.
testing::AssertionResult Focus(wxWindow& control);

/// Clicks into the middle of a control.
void Click(wxWindow& control);

/// Clicks at a place inside a control's client area.
void ClickAt(wxWindow& control, const wxPoint& place);

/// Moves the pointer to a cell.
void PointAtCell(wxGrid& grid, int row, int column);

/// Clicks into a cell; never taken for the second half of a double click.
/// @param modifiers wxMOD_CONTROL, wxMOD_SHIFT, both or none.
void ClickCell(wxGrid& grid, int row, int column, int modifiers = wxMOD_NONE);

void DoubleClickCell(wxGrid& grid, int row, int column);

/// Clicks on one item of a radio box with a single column.
void ClickRadioItem(wxRadioBox& radioBox, int item);

/// Clicks on an item of the open list of a combo box.
void ClickListItem(wxComboBox& comboBox, int item);

/// Clicks on the tab of a page.
void ClickTab(wxNotebook& notebook, int page);

/// Presses and releases a key.
void PressKey(int keyCode, int modifiers = wxMOD_NONE);

/// Types letters, digits and "+-., ".
void Type(const char* text);
