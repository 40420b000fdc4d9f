#include "complaints.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace plccheck {

namespace {

/// The toolkits' own.
constexpr std::array<const char*, 9> knownComplaints = {
    // Once in every GTK program that has called gtk_init().
    "gtk_disable_setlocale",
    // In a window too small for what is in it.
    "Drawing a gadget with negative dimensions",
    "gtk_box_gadget_distribute: assertion 'size >= 0' failed in GtkScrollbar",
    // When a grid scrolls over a cell editor that was closed under a dialog or a host's callback.
    "gtk_widget_set_allocation: assertion '_gtk_widget_get_visible (widget) ||",
    // When a key opens a menu while another program holds the pointer.
    "gdk_window_get_window_type: assertion 'GDK_IS_WINDOW (window)' failed",
    "WIDGET_REALIZED_FOR_EVENT (widget, event)",
    // When a file dialog is closed before it has looked for the name that was typed.
    "GTK_IS_TREE_VIEW",
    "GTK_IS_TREE_SELECTION",
    "GTK_IS_TREE_SORTABLE"};

const char* FieldOf(const GLogField* fields, gsize count, const char* key)
{
    const auto* const end = fields + count;
    const auto* const field = std::find_if(fields, end, [key](const GLogField& candidate) {
        return std::strcmp(candidate.key, key) == 0;
    });
    return field != end ? static_cast<const char*>(field->value) : "";
}

} // namespace

std::string ComplaintIn(GLogLevelFlags level, const GLogField* fields, gsize count)
{
    const char* const message = FieldOf(fields, count, "MESSAGE");
    const bool known =
        std::any_of(knownComplaints.begin(), knownComplaints.end(), [message](const char* words) {
            return std::strstr(message, words) != nullptr;
        });
    if ((level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) == 0 || known) {
        return "";
    }
    return std::string(FieldOf(fields, count, "GLIB_DOMAIN")) + ": " + message;
}

} // namespace plccheck
