#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

// The window that stands for the debugger's: it says what is watched and what was found. GUI
// thread.

namespace hostcheck {

class Window
{
public:
    /// @param onClose runs when the operator closes the window.
    explicit Window(std::function<void()> onClose);
    ~Window();
    Window(const Window&) = delete;
    Window(Window&&) = delete;
    Window& operator=(const Window&) = delete;
    Window& operator=(Window&&) = delete;

    void Show(const std::string& text);

private:
    static gboolean OnDelete(GtkWidget* widget, GdkEvent* event, gpointer self);
    static void OnDestroyed(GtkWidget* widget, gpointer self);

    const std::function<void()> m_onClose;
    GtkWidget* m_window; ///< Null when it is gone.
    GtkTextBuffer* m_text = nullptr;
};

} // namespace hostcheck
