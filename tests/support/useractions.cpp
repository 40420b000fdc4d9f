#include "useractions.h"

#include "waitfor.h"
#include "widgets.h"

#include <gtk/gtk.h>
#include <wx/uiaction.h>

namespace {

/// For the next clicks: within this time two of them are a double click. The desktop's setting
/// stays as it is, so that the program waits as long as ever for the second one.
void SetDoubleClickTime(unsigned milliseconds)
{
    gdk_display_set_double_click_time(gdk_display_get_default(), milliseconds);
}

constexpr unsigned noDoubleClicksMs = 0;
constexpr unsigned doubleClicksMs = 5000;

wxPoint Middle(const wxRect& rect)
{
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

/// @return the size of a window with the borders that the window manager has put around it.
wxSize SizeOnScreen(const wxTopLevelWindow& window)
{
    GdkRectangle outside;
    gdk_window_get_frame_extents(gtk_widget_get_window(window.GetHandle()), &outside);
    return {outside.width, outside.height};
}

void ClickOnScreen(const wxPoint& place)
{
    SetDoubleClickTime(noDoubleClicksMs);
    wxUIActionSimulator simulator;
    simulator.MouseMove(place);
    simulator.MouseClick();
}

wxRect PlaceOf(GtkWidget* widget)
{
    GtkAllocation place;
    gtk_widget_get_allocation(widget, &place);
    return {place.x, place.y, place.width, place.height};
}

/// For a widget that has no drawing window of its own: its place is one inside its parent's.
wxPoint ScreenMiddle(GtkWidget* widget)
{
    wxPoint origin;
    gdk_window_get_origin(gtk_widget_get_window(widget), &origin.x, &origin.y);
    return origin + Middle(PlaceOf(widget));
}

wxPoint CellOnScreen(wxGrid& grid, int row, int column)
{
    return grid.GetGridWindow()->ClientToScreen(MiddleOfCell(grid, row, column));
}

} // namespace

testing::AssertionResult ShowActive(wxTopLevelWindow& window)
{
    const wxSize size = window.GetSize();
    window.Show();
    testing::AssertionResult active =
        WaitFor("window active", [&] { return window.IsShownOnScreen() && window.IsActive(); });
    // The toolkit opens a window in the borders of the one before it, and lets it grow when its own
    // turn out wider.
    window.SetSize(size);
    return active ? BecomesActive(window, size) : active;
}

testing::AssertionResult BecomesActive(wxTopLevelWindow& window, const wxSize& size)
{
    return WaitFor("window active, in its size", [&] {
        return window.IsShownOnScreen() && window.IsActive() && window.GetSize() == size &&
               SizeOnScreen(window) == size;
    });
}

testing::AssertionResult Focus(wxWindow& control)
{
    control.SetFocus();
    return WaitFor("control focused", [&] { return control.HasFocus(); });
}

void Click(wxWindow& control)
{
    ClickAt(control, Middle(wxRect(control.GetClientSize())));
}

void ClickAt(wxWindow& control, const wxPoint& place)
{
    ClickOnScreen(control.ClientToScreen(place));
}

void PointAtCell(wxGrid& grid, int row, int column)
{
    const wxPoint place = CellOnScreen(grid, row, column);
    wxUIActionSimulator simulator;
    simulator.MouseMove(place - wxPoint(1, 1)); // it may rest there already
    simulator.MouseMove(place);
}

void ClickCell(wxGrid& grid, int row, int column, int modifiers)
{
    SetDoubleClickTime(noDoubleClicksMs);
    wxUIActionSimulator simulator;
    simulator.MouseMove(CellOnScreen(grid, row, column));
    std::vector<int> held;
    if ((modifiers & wxMOD_CONTROL) != 0) {
        held.push_back(WXK_CONTROL);
    }
    if ((modifiers & wxMOD_SHIFT) != 0) {
        held.push_back(WXK_SHIFT);
    }
    for (const int key : held) {
        simulator.KeyDown(key);
    }
    simulator.MouseClick();
    for (const int key : held) {
        simulator.KeyUp(key);
    }
}

void DoubleClickCell(wxGrid& grid, int row, int column)
{
    SetDoubleClickTime(doubleClicksMs);
    wxUIActionSimulator simulator;
    simulator.MouseMove(CellOnScreen(grid, row, column));
    simulator.MouseDblClick();
}

void ClickRadioItem(wxRadioBox& radioBox, int item)
{
    ClickOnScreen(ScreenMiddle(RadioButtonOf(radioBox, item)));
}

void ClickListItem(wxComboBox& comboBox, int item)
{
    ClickOnScreen(ScreenMiddle(ListItemOf(comboBox, item)));
}

void ClickTab(wxNotebook& notebook, int page)
{
    ClickOnScreen(ScreenMiddle(TabOf(notebook, page)));
}

void PressKey(int keyCode, int modifiers)
{
    wxUIActionSimulator().Char(keyCode, modifiers);
}

void Type(const char* text)
{
    wxUIActionSimulator().Text(text);
}
