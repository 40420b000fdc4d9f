#include "operator.h"

#include "hostloop.h"

#include <gdk/gdkx.h>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <stdexcept>

namespace {

constexpr long fromPager = 2; ///< Who asks the window manager: the operator, through a task list.

/// No two of the next clicks are a double click. The desktop's setting stays as it is.
void AllowNoDoubleClick()
{
    OnGui([] { gdk_display_set_double_click_time(gdk_display_get_default(), 0); });
}

} // namespace

bool IsOnScreen(GtkWidget* widget)
{
    return widget != nullptr && gtk_widget_get_mapped(widget) != FALSE;
}

XWindow TopLevelWindowOf(GtkWidget* widget)
{
    return gdk_x11_window_get_xid(gtk_widget_get_window(gtk_widget_get_toplevel(widget)));
}

Spot PlaceIn(GtkWidget* widget, int x, int y)
{
    Spot spot{TopLevelWindowOf(widget), 0, 0};
    gtk_widget_translate_coordinates(
        widget, gtk_widget_get_toplevel(widget), x, y, &spot.x, &spot.y);
    return spot;
}

Spot MiddleOf(GtkWidget* widget)
{
    return PlaceIn(
        widget,
        gtk_widget_get_allocated_width(widget) / 2,
        gtk_widget_get_allocated_height(widget) / 2);
}

Operator::Operator() : m_display(XOpenDisplay(nullptr))
{
    if (m_display == nullptr) {
        throw std::runtime_error("no X server");
    }
}

Operator::~Operator()
{
    XCloseDisplay(m_display);
}

void Operator::Click(const Spot& spot, KeySym held)
{
    AllowNoDoubleClick();
    MoveOver(spot);
    if (held != 0) {
        Key(held, true);
    }
    Button(Button1);
    if (held != 0) {
        Key(held, false);
    }
    XSync(m_display, False);
}

void Operator::PressButton(int x, int y, unsigned button, int times)
{
    XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
    for (int i = 0; i < times; ++i) {
        Button(button);
    }
    XSync(m_display, False);
}

void Operator::Press(KeySym key, KeySym held)
{
    if (held != 0) {
        Key(held, true);
    }
    Key(key, true);
    Key(key, false);
    if (held != 0) {
        Key(held, false);
    }
    XSync(m_display, False);
}

void Operator::Type(const std::string& ascii)
{
    for (const char letter : ascii) {
        const auto key = static_cast<KeySym>(static_cast<unsigned char>(letter));
        const KeyCode code = XKeysymToKeycode(m_display, key);
        const bool shifted = XkbKeycodeToKeysym(m_display, code, 0, 0) != key;
        Press(key, shifted ? XK_Shift_L : 0);
    }
}

testing::AssertionResult Operator::HoldPointer()
{
    const auto hold = [this] {
        return XGrabPointer(
            m_display,
            DefaultRootWindow(m_display),
            False,
            ButtonPressMask,
            GrabModeAsync,
            GrabModeAsync,
            None,
            None,
            CurrentTime);
    };
    return HoldsOnGui([&] { return hold() == GrabSuccess; })
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << "the pointer is held already";
}

void Operator::ReleasePointer()
{
    XUngrabPointer(m_display, CurrentTime);
    XSync(m_display, False);
}

testing::AssertionResult Operator::Activate(GtkWidget* topLevel)
{
    const auto isActive = [topLevel] {
        return gtk_window_is_active(GTK_WINDOW(topLevel)) != FALSE;
    };
    if (!OnGui(isActive)) {
        const Window window = OnGui([topLevel] { return TopLevelWindowOf(topLevel); });
        TellManager("_NET_ACTIVE_WINDOW", window, fromPager, CurrentTime);
        if (!HoldsOnGui(isActive)) {
            return testing::AssertionFailure() << "the window does not get the keyboard";
        }
    }
    return testing::AssertionSuccess();
}

void Operator::CloseThroughManager(Window window)
{
    TellManager("_NET_CLOSE_WINDOW", window, CurrentTime, fromPager);
}

std::pair<int, int> Operator::OuterSize(XWindow window)
{
    XWindowAttributes outside;
    XGetWindowAttributes(m_display, FrameAround(window), &outside);
    return {outside.width, outside.height};
}

XWindow Operator::FrameAround(XWindow window)
{
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(m_display, window, &root, &parent, &children, &count);
    XFree(children);
    return parent == root ? window : FrameAround(parent);
}

void Operator::MoveOver(const Spot& spot)
{
    const auto reached = [&] {
        int x = 0;
        int y = 0;
        Window child = None;
        XTranslateCoordinates(
            m_display, spot.window, DefaultRootWindow(m_display), spot.x, spot.y, &x, &y, &child);
        XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
        XSync(m_display, False);
        return PointerIsOver(spot.window);
    };
    EXPECT_TRUE(HoldsOnGui(reached)) << "the window cannot be reached with the pointer";
}

void Operator::Button(unsigned button)
{
    XTestFakeButtonEvent(m_display, button, True, CurrentTime);
    XTestFakeButtonEvent(m_display, button, False, CurrentTime);
}

void Operator::Key(KeySym key, bool down)
{
    XTestFakeKeyEvent(
        m_display, XKeysymToKeycode(m_display, key), static_cast<Bool>(down), CurrentTime);
}

bool Operator::PointerIsOver(Window window)
{
    Window under = DefaultRootWindow(m_display);
    while (under != None && under != window) {
        Window root = None;
        Window child = None;
        int ignored = 0;
        unsigned state = 0;
        if (XQueryPointer(
                m_display, under, &root, &child, &ignored, &ignored, &ignored, &ignored, &state) ==
            False) {
            return false;
        }
        under = child;
    }
    return under == window;
}

void Operator::TellManager(const char* message, Window window, long first, long second)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(m_display, message, False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = first;
    event.xclient.data.l[1] = second;
    XSendEvent(
        m_display,
        DefaultRootWindow(m_display),
        False,
        SubstructureRedirectMask | SubstructureNotifyMask,
        &event);
    XSync(m_display, False);
}
