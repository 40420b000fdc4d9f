#include "widgets.h"

#include <algorithm>
#include <vector>

namespace {

/// Collects the radio buttons below @p widget, in any order.
void CollectRadioButtons(GtkWidget* widget, std::vector<GtkWidget*>& buttons)
{
    if (GTK_IS_RADIO_BUTTON(widget)) {
        buttons.push_back(widget);
    } else if (GTK_IS_CONTAINER(widget)) {
        const auto collect = [](GtkWidget* child, gpointer data) {
            CollectRadioButtons(child, *static_cast<std::vector<GtkWidget*>*>(data));
        };
        gtk_container_foreach(GTK_CONTAINER(widget), collect, &buttons);
    }
}

int TopOf(GtkWidget* widget)
{
    GtkAllocation place;
    gtk_widget_get_allocation(widget, &place);
    return place.y;
}

} // namespace

GtkWidget* RadioButtonOf(const wxRadioBox& radioBox, int item)
{
    std::vector<GtkWidget*> buttons;
    CollectRadioButtons(radioBox.GetHandle(), buttons);
    std::sort(buttons.begin(), buttons.end(), [](GtkWidget* one, GtkWidget* other) {
        return TopOf(one) < TopOf(other);
    });
    return buttons.at(static_cast<std::size_t>(item));
}

GtkWidget* TabOf(const wxNotebook& notebook, int page)
{
    auto* tabs = GTK_NOTEBOOK(notebook.GetHandle());
    return gtk_notebook_get_tab_label(tabs, gtk_notebook_get_nth_page(tabs, page));
}

wxPoint MiddleOfCell(wxGrid& grid, int row, int column)
{
    const wxRect cell = grid.CellToRect(row, column);
    return grid.CalcScrolledPosition(wxPoint(cell.x + cell.width / 2, cell.y + cell.height / 2));
}
