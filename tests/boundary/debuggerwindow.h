#pragma once

#include <wx/combobox.h>
#include <wx/frame.h>
#include <wx/grid.h>
#include <wx/notebook.h>

#include <string>
#include <vector>

// The debugger's window as seen from outside: through the toolkit, knowing none of the plug-in's
// classes. GUI thread.

using Words = std::vector<std::string>;

/// Positions of the notebook's pages.
enum Page
{
    watchPage,
    programPage
};

/// Ids that are fixed for the plug-in's controls.
enum ControlId
{
    defineButton = 10001,
    modifyButton = 10002,
    deleteButton = 10003,
    blockCombo = 10004,
    areaCombo = 10005,
    dataBlockCombo = 10006,
    formatBox = 10007,
    sizeBox = 10008,
    addressField = 10009
};

/// @return the debugger's frame; null when there is none, or when it is about to be deleted.
wxFrame* Frame();

wxNotebook& Notebook();

/// @return the grid on a page.
wxGrid& GridOn(Page page);

/// @return the watch list, a row as "operand|value|format".
Words WatchList();

/// @return the rows that belong to a selected block, in order of the blocks.
std::vector<int> SelectedRows();
