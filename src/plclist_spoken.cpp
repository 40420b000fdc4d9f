#include "plclist_spoken.h"

#include <gtk/gtk.h>

namespace {

wxString WordsOfCursorsRow(const wxGrid& grid)
{
    const int row = grid.GetGridCursorRow();
    const int columns = grid.GetNumberCols();
    wxString words;
    for (int i = 0; i < columns && row != wxNOT_FOUND && row < grid.GetNumberRows(); ++i) {
        const int column = (grid.GetGridCursorCol() + i) % columns;
        words << (i == 0 ? "" : ", ") << grid.GetColLabelValue(column) << ": "
              << grid.GetCellValue(row, column);
    }
    return words;
}

} // namespace

void SpeakCursorsRow(wxGrid& grid)
{
    // Nothing of it changes without being painted.
    grid.GetGridWindow()->Bind(wxEVT_PAINT, [&grid](wxPaintEvent& event) {
        AtkObject* list = gtk_widget_get_accessible(grid.GetGridWindow()->GetHandle());
        const wxString words = WordsOfCursorsRow(grid);
        if (g_strcmp0(atk_object_get_name(list), words.utf8_str()) != 0) {
            atk_object_set_name(list, words.utf8_str());
        }
        event.Skip();
    });
}
