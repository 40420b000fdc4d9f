#include "plcvargrid_look.h"

#include <wx/settings.h>

void ApplyListLook(wxGrid& grid)
{
    grid.SetWindowStyle(wxSUNKEN_BORDER);
    grid.SetDefaultCellAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
    grid.SetRowLabelSize(0);
    // Without the focus a selected row is grey, where the toolkit's white cannot be read.
    grid.SetSelectionForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
}
