#include "watchvalues.h"

#include <gtk/gtk.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>

// The values in a GtkTreeView, as a program shows them that has it at hand.

namespace {

enum Column : gint
{
    operandColumn,
    valueColumn,
    formatColumn,
    columnCount
};

bench::ShownTick shownTick;
GtkListStore* shownRows;

/// Calls something with each row, from above.
template <typename Use> void ForEachRow(const Use& use)
{
    GtkTreeIter row;
    std::size_t place = 0;
    gboolean found = gtk_tree_model_get_iter_first(GTK_TREE_MODEL(shownRows), &row);
    for (; found != FALSE; ++place) {
        use(row, place);
        found = gtk_tree_model_iter_next(GTK_TREE_MODEL(shownRows), &row);
    }
}

gboolean OnTick(gpointer /*unused*/)
{
    shownTick.Next();
    if (shownTick.IsToPrint()) {
        ForEachRow([](GtkTreeIter& row, std::size_t /*place*/) {
            gchar* text = nullptr;
            gtk_tree_model_get(GTK_TREE_MODEL(shownRows), &row, valueColumn, &text, -1);
            std::puts(text);
            g_free(text);
        });
        std::fflush(stdout);
    }
    ForEachRow([](GtkTreeIter& row, std::size_t place) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%.6f", shownTick.Value(place));
        gtk_list_store_set(shownRows, &row, valueColumn, text.data(), -1);
    });
    return G_SOURCE_CONTINUE;
}

GtkWidget* NewList()
{
    shownRows = gtk_list_store_new(columnCount, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING);
    for (std::size_t i = 0; i < bench::shownValues; ++i) {
        const std::string operand = "MD" + std::to_string(4 * i);
        gtk_list_store_insert_with_values(
            shownRows,
            nullptr,
            -1,
            operandColumn,
            operand.c_str(),
            valueColumn,
            "?",
            formatColumn,
            "float",
            -1);
    }
    GtkWidget* list = gtk_tree_view_new_with_model(GTK_TREE_MODEL(shownRows));
    for (const auto& [title, column] :
         {std::pair{"Operand", operandColumn}, {"Value", valueColumn}, {"Format", formatColumn}}) {
        gtk_tree_view_insert_column_with_attributes(
            GTK_TREE_VIEW(list), -1, title, gtk_cell_renderer_text_new(), "text", column, nullptr);
    }
    return list;
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), "tree");
    GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_container_add(GTK_CONTAINER(scrolled), NewList());
    gtk_container_add(GTK_CONTAINER(window), scrolled);
    gtk_widget_show_all(window);
    g_timeout_add(bench::shownPeriodMs, OnTick, nullptr);
    gtk_main();
    return 0;
}
