#include "widgets.h"

#include <algorithm>
#include <string>
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

/// Appends the words of all labels on the screen below @p widget.
void AppendLabels(GtkWidget* widget, wxString& words)
{
    if (GTK_IS_LABEL(widget)) {
        if (gtk_widget_get_mapped(widget) != FALSE) {
            words += wxString::FromUTF8(gtk_label_get_text(GTK_LABEL(widget)));
        }
    } else if (GTK_IS_CONTAINER(widget)) {
        const auto append = [](GtkWidget* child, gpointer all) {
            AppendLabels(child, *static_cast<wxString*>(all));
        };
        gtk_container_foreach(GTK_CONTAINER(widget), append, &words);
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

bool IsListOpen(const wxComboBox& comboBox)
{
    gboolean isOpen = FALSE;
    g_object_get(comboBox.GetHandle(), "popup-shown", &isOpen, nullptr);
    return isOpen != FALSE;
}

GtkWidget* ListItemOf(const wxComboBox& comboBox, int item)
{
    AtkObject* list = gtk_combo_box_get_popup_accessible(GTK_COMBO_BOX(comboBox.GetHandle()));
    GtkWidget* menu = gtk_accessible_get_widget(GTK_ACCESSIBLE(list));
    GList* items = gtk_container_get_children(GTK_CONTAINER(menu));
    auto* found = static_cast<GtkWidget*>(g_list_nth_data(items, static_cast<guint>(item)));
    g_list_free(items);
    return found;
}

std::optional<wxString> TipOnScreen()
{
    GList* windows = gtk_window_list_toplevels();
    std::optional<wxString> words;
    for (const GList* window = windows; window != nullptr; window = window->next) {
        auto* widget = static_cast<GtkWidget*>(window->data);
        const bool isTip = G_OBJECT_TYPE_NAME(widget) == std::string("GtkTooltipWindow");
        if (isTip && gtk_widget_get_mapped(widget) != FALSE) {
            words = "";
            AppendLabels(widget, *words);
        }
    }
    g_list_free(windows);
    return words;
}

wxPoint MiddleOfCell(wxGrid& grid, int row, int column)
{
    const wxRect cell = grid.CellToRect(row, column);
    return grid.CalcScrolledPosition(wxPoint(cell.x + cell.width / 2, cell.y + cell.height / 2));
}
