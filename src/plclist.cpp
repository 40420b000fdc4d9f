#include "plclist.h"

#include "plclist_fit.h"
#include "plclist_line.h"
#include "plclist_spoken.h"
#include "plclist_tip.h"

#include <gtk/gtk.h>
#include <wx/settings.h>

namespace {

constexpr int smallestList = 64; ///< In pixels each way: room for two scroll bars.

/// Lets a press find what lies under the pointer now. The toolkit goes by the last movement of the
/// pointer, and an assert fires when the edge of a column that lay there then has moved away.
void FindEdgeAtPress(wxWindow& window)
{
    window.Bind(wxEVT_LEFT_DOWN, [&window](wxMouseEvent& press) {
        wxMouseEvent movement(press);
        movement.SetEventType(wxEVT_MOTION);
        movement.SetLeftDown(false);
        window.GetEventHandler()->ProcessEvent(movement);
        press.Skip();
    });
}

void LetGo(GtkWidget* scrollBar, const wxGrid* grid)
{
    GdkEvent* release = gdk_event_new(GDK_BUTTON_RELEASE);
    gboolean handled = FALSE;
    g_signal_emit_by_name(scrollBar, "button-release-event", release, &handled);
    if (!grid->IsBeingDeleted()) { // it hears the end of its scrolling
        g_signal_emit_by_name(scrollBar, "event-after", release);
    }
    gdk_event_free(release);
}

/// Lets go of a scroll bar that goes from the screen, with the page or with the window. Of one that
/// is held the toolkit would not learn the end, and keep all clicks from all windows of the host.
void LetGoUnseen(wxGrid& grid)
{
    auto* list = GTK_SCROLLED_WINDOW(grid.GetHandle());
    for (GtkWidget* scrollBar :
         {gtk_scrolled_window_get_hscrollbar(list), gtk_scrolled_window_get_vscrollbar(list)}) {
        g_signal_connect(scrollBar, "unmap", G_CALLBACK(LetGo), &grid);
    }
}

/// Whenever a cell is painted, the windows around it are, too. For each of them the toolkit would
/// set up means of drawing, and ask for the theme's font and colours, to call handlers that draw
/// nothing.
void PaintNothingInVain(wxGrid& grid)
{
    grid.GetGridWindow()->SetBackgroundStyle(wxBG_STYLE_PAINT);
    grid.Bind(wxEVT_PAINT, [](wxPaintEvent&) {});
    for (wxWindow* window = &grid; window != nullptr;
         window = window->IsTopLevel() ? nullptr : window->GetParent()) {
        window->SetBackgroundStyle(wxBG_STYLE_SYSTEM);
    }
}

} // namespace

void SetUpList(wxGrid& grid)
{
    grid.SetMinSize({smallestList, smallestList});
    grid.SetWindowStyle(wxSUNKEN_BORDER);
    grid.SetDefaultCellAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
    // A number that is cut between its digits reads as another number.
    grid.SetDefaultCellFitMode(wxGridFitMode::Ellipsize());
    ShowCutTextsInTips(grid);
    SpeakCursorsRow(grid);
    grid.RegisterDataType(wxGRID_VALUE_STRING, new LineRenderer, new wxGridCellTextEditor);
    grid.SetRowLabelSize(0);
    // Without the focus a selected row is grey, where the toolkit's white cannot be read.
    grid.SetSelectionForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
    PaintNothingInVain(grid);
    FindEdgeAtPress(*grid.GetGridWindow());
    FindEdgeAtPress(*grid.GetGridColLabelWindow());
    LetGoUnseen(grid);
}

bool KeepsTab(const wxGrid& grid, bool forward)
{
    const int last = forward ? grid.GetNumberCols() - 1 : 0;
    const bool isAtEnd = grid.GetNumberRows() == 0 || grid.GetGridCursorCol() == last;
    return !isAtEnd || grid.IsCellEditControlShown();
}

int FitListColumns(wxGrid& grid)
{
    const int virtualWidth = grid.GetVirtualSize().x; // before the columns change it
    const wxGridUpdateLocker batch(&grid);
    grid.AutoSizeColumn(0);
    grid.AutoSizeColumn(1);
    const int width = LastColumnWidth(virtualWidth, grid.GetColSize(0), grid.GetColSize(1));
    if (IsColumnWidth(width)) {
        grid.SetColSize(2, width);
    }
    return virtualWidth;
}
