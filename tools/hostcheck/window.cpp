#include "window.h"

#include <utility>

namespace hostcheck {

Window::Window(std::function<void()> onClose)
    : m_onClose(std::move(onClose)), m_window(gtk_window_new(GTK_WINDOW_TOPLEVEL))
{
    constexpr int width = 600;
    constexpr int height = 480;
    gtk_window_set_title(GTK_WINDOW(m_window), "PLC debugger: host check");
    gtk_window_set_default_size(GTK_WINDOW(m_window), width, height);
    GtkWidget* const scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    GtkWidget* const view = gtk_text_view_new();
    gtk_text_view_set_editable(GTK_TEXT_VIEW(view), FALSE);
    gtk_text_view_set_cursor_visible(GTK_TEXT_VIEW(view), FALSE);
    gtk_text_view_set_monospace(GTK_TEXT_VIEW(view), TRUE);
    gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD_CHAR);
    m_text = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
    gtk_container_add(GTK_CONTAINER(scrolled), view);
    gtk_container_add(GTK_CONTAINER(m_window), scrolled);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(OnDelete), this);
    g_signal_connect(m_window, "destroy", G_CALLBACK(OnDestroyed), this);
    gtk_widget_show_all(m_window);
}

Window::~Window()
{
    if (m_window != nullptr) {
        g_signal_handlers_disconnect_by_data(m_window, this);
        gtk_widget_destroy(m_window);
    }
}

void Window::Show(const std::string& text)
{
    if (m_window != nullptr) {
        gtk_text_buffer_set_text(m_text, text.c_str(), static_cast<int>(text.size()));
    }
}

gboolean Window::OnDelete(GtkWidget* /*unused*/, GdkEvent* /*unused*/, gpointer self)
{
    const auto onClose = static_cast<Window*>(self)->m_onClose; // which may delete the window
    onClose();
    return FALSE;
}

void Window::OnDestroyed(GtkWidget* /*unused*/, gpointer self)
{
    static_cast<Window*>(self)->m_window = nullptr;
}

} // namespace hostcheck
