#include "window.h"

#include "wx_host.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace plccheck {

namespace {

using Event = std::unique_ptr<GdkEvent, decltype(&gdk_event_free)>;

/// An event of the keyboard for a window.
Event KeyboardEvent(GtkWindow* window, GdkEventType type)
{
    Event event(gdk_event_new(type), &gdk_event_free);
    GdkWindow* const receiver = gtk_widget_get_window(GTK_WIDGET(window));
    event->any.window = static_cast<GdkWindow*>(g_object_ref(receiver)); // dropped by the event
    GdkSeat* const seat = gdk_display_get_default_seat(gdk_window_get_display(receiver));
    gdk_event_set_device(event.get(), gdk_seat_get_keyboard(seat));
    return event;
}

/// @param list is freed.
template <typename Item> std::vector<Item*> Items(GList* list)
{
    const std::unique_ptr<GList, decltype(&g_list_free)> owned(list, &g_list_free);
    std::vector<Item*> items;
    for (const GList* link = list; link != nullptr; link = link->next) {
        items.push_back(static_cast<Item*>(link->data));
    }
    return items;
}

std::vector<GtkWindow*> Windows()
{
    auto windows = Items<GtkWindow>(gtk_window_list_toplevels());
    const auto others = std::remove_if(windows.begin(), windows.end(), [](GtkWindow* window) {
        return gtk_window_get_window_type(window) != GTK_WINDOW_TOPLEVEL;
    });
    windows.erase(others, windows.end());
    return windows;
}

std::vector<GtkWidget*> Children(GtkWidget* container)
{
    return Items<GtkWidget>(gtk_container_get_children(GTK_CONTAINER(container)));
}

/// The first widget of a kind in or below another; null when there is none.
GtkWidget* Descendant(GtkWidget* widget, GType kind)
{
    if (g_type_is_a(G_OBJECT_TYPE(widget), kind) != FALSE) {
        return widget;
    }
    if (GTK_IS_CONTAINER(widget)) {
        for (GtkWidget* child : Children(widget)) {
            if (GtkWidget* const found = Descendant(child, kind)) {
                return found;
            }
        }
    }
    return nullptr;
}

bool IsHostWindow(GtkWindow* window)
{
    return std::strcmp(gtk_widget_get_name(GTK_WIDGET(window)), wxHostWindow) == 0;
}

bool IsDialog(GtkWindow* window)
{
    return GTK_IS_DIALOG(window) || gtk_window_get_modal(window) != FALSE;
}

GtkWindow* FirstWindow(bool dialog)
{
    for (GtkWindow* window : Windows()) {
        const bool shown = gtk_widget_get_mapped(GTK_WIDGET(window)) != FALSE;
        if (shown && IsDialog(window) == dialog && !IsHostWindow(window)) {
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

Picture PictureOf(GtkWindow* window)
{
    GdkWindow* const shown = gtk_widget_get_window(GTK_WIDGET(window));
    const std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> pixbuf(
        gdk_pixbuf_get_from_window(
            shown, 0, 0, gdk_window_get_width(shown), gdk_window_get_height(shown)),
        &g_object_unref);
    if (!pixbuf) {
        return {};
    }
    Picture picture{gdk_pixbuf_get_width(pixbuf.get()), gdk_pixbuf_get_height(pixbuf.get()), {}};
    const std::ptrdiff_t bytes = std::ptrdiff_t{Picture::channels} * picture.width;
    const std::uint8_t* row = gdk_pixbuf_read_pixels(pixbuf.get());
    for (int y = 0; y < picture.height; ++y) {
        picture.pixels.insert(picture.pixels.end(), row, row + bytes);
        row += gdk_pixbuf_get_rowstride(pixbuf.get());
    }
    return picture;
}

std::size_t CountWindows()
{
    return Windows().size();
}

bool TurnToPage(GtkWindow* window, int page)
{
    GtkWidget* const notebook = Descendant(GTK_WIDGET(window), GTK_TYPE_NOTEBOOK);
    if (notebook == nullptr || gtk_notebook_get_n_pages(GTK_NOTEBOOK(notebook)) <= page) {
        return false;
    }
    gtk_notebook_set_current_page(GTK_NOTEBOOK(notebook), page);
    return true;
}

bool ChooseExit(GtkWindow* window)
{
    GtkWidget* const bar = Descendant(GTK_WIDGET(window), GTK_TYPE_MENU_BAR);
    const auto menus = bar == nullptr ? std::vector<GtkWidget*>{} : Children(bar);
    if (menus.empty()) {
        return false;
    }
    GtkWidget* const menu = gtk_menu_item_get_submenu(GTK_MENU_ITEM(menus.front()));
    const auto items = menu == nullptr ? std::vector<GtkWidget*>{} : Children(menu);
    if (items.empty()) {
        return false;
    }
    gtk_menu_item_activate(GTK_MENU_ITEM(items.back()));
    return true;
}

void GiveKeyboard(GtkWindow* window)
{
    const Event event = KeyboardEvent(window, GDK_FOCUS_CHANGE);
    event->focus_change.in = TRUE;
    gtk_main_do_event(event.get());
}

void Type(GtkWindow* window, unsigned key)
{
    GdkDisplay* const display = gtk_widget_get_display(GTK_WIDGET(window));
    GdkKeymapKey* codes = nullptr;
    int count = 0;
    gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(display), key, &codes, &count);
    for (const GdkEventType type : {GDK_KEY_PRESS, GDK_KEY_RELEASE}) {
        const Event event = KeyboardEvent(window, type);
        event->key.keyval = key;
        event->key.hardware_keycode = static_cast<guint16>(count > 0 ? codes[0].keycode : 0);
        gtk_main_do_event(event.get());
    }
    g_free(codes);
}

} // namespace plccheck
