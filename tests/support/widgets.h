#pragma once

#include <gtk/gtk.h>
#include <wx/combobox.h>
#include <wx/grid.h>
#include <wx/notebook.h>
#include <wx/radiobox.h>

#include <optional>

// Where the operator finds the parts of a control that are no windows of the toolkit. GUI thread.

/// @return the button of an item of a radio box with a single column.
GtkWidget* RadioButtonOf(const wxRadioBox& radioBox, int item);

/// @return the tab of a page.
GtkWidget* TabOf(const wxNotebook& notebook, int page);

/// @return whether the list of a combo box is open.
bool IsListOpen(const wxComboBox& comboBox);

/// @return an item of the list of a combo box.
GtkWidget* ListItemOf(const wxComboBox& comboBox, int item);

/// @return the words of the tool tip on the screen, nothing when there is none.
std::optional<wxString> TipOnScreen();

/// @return the middle of a cell as a place in the grid's window.
wxPoint MiddleOfCell(wxGrid& grid, int row, int column);
