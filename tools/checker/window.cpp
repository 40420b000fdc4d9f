#include "window.h"

#include <memory>

namespace plccheck {

namespace {

std::vector<GtkWindow*> VisibleWindows()
{
    const std::unique_ptr<GList, decltype(&g_list_free)> all(
        gtk_window_list_toplevels(), &g_list_free);
    std::vector<GtkWindow*> windows;
    for (const GList* item = all.get(); item != nullptr; item = item->next) {
        auto* const window = static_cast<GtkWindow*>(item->data);
        if (gtk_window_get_window_type(window) == GTK_WINDOW_TOPLEVEL &&
            gtk_widget_get_mapped(GTK_WIDGET(window)) != FALSE) {
            windows.push_back(window);
        }
    }
    return windows;
}

bool IsDialog(GtkWindow* window)
{
    return GTK_IS_DIALOG(window) || gtk_window_get_modal(window) != FALSE;
}

GtkWindow* FirstWindow(bool dialog)
{
    for (GtkWindow* window : VisibleWindows()) {
        if (IsDialog(window) == dialog) {
            return window;
        }
    }
    return nullptr;
}

std::string TextOf(GtkWindow* dialog, const char* property)
{
    char* text = nullptr;
    g_object_get(dialog, property, &text, nullptr);
    const std::unique_ptr<char, decltype(&g_free)> owned(text, &g_free);
    return text == nullptr ? "" : text;
}

} // namespace

GtkWindow* DebuggerWindow()
{
    return FirstWindow(false);
}

GtkWindow* OpenDialog()
{
    return FirstWindow(true);
}

std::string DescribeDialog(GtkWindow* dialog)
{
    std::string words = TextOf(dialog, "title");
    if (GTK_IS_MESSAGE_DIALOG(dialog)) {
        words += ": " + TextOf(dialog, "text") + ' ' + TextOf(dialog, "secondary-text");
    }
    return words;
}

void Confirm(GtkWindow* dialog)
{
    if (GTK_IS_DIALOG(dialog)) {
        gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
    } else {
        gtk_window_close(dialog);
    }
}

std::vector<std::uint8_t> PictureOf(GtkWindow* window)
{
    GdkWindow* const shown = gtk_widget_get_window(GTK_WIDGET(window));
    const std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> picture(
        gdk_pixbuf_get_from_window(
            shown, 0, 0, gdk_window_get_width(shown), gdk_window_get_height(shown)),
        &g_object_unref);
    if (!picture) {
        return {};
    }
    const std::uint8_t* const pixels = gdk_pixbuf_read_pixels(picture.get());
    return {pixels, pixels + gdk_pixbuf_get_byte_length(picture.get())};
}

} // namespace plccheck
