#include "pointer.h"

#include "waitfor.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/uiaction.h>

#include <X11/extensions/XTest.h>

namespace {

constexpr int dragSteps = 10;

void MoveTo(wxWindow& window, const wxPoint& place)
{
    wxUIActionSimulator().MouseMove(window.ClientToScreen(place));
    RunPending();
}

void MoveOn(wxWindow& window, const wxPoint& from, const wxPoint& to)
{
    for (int i = 1; i <= dragSteps; ++i) {
        MoveTo(window, from + (to - from) * i / dragSteps);
    }
}

} // namespace

void Drag(wxWindow& window, const wxPoint& from, const wxPoint& to)
{
    MoveTo(window, from);
    wxUIActionSimulator simulator;
    simulator.MouseDown();
    MoveOn(window, from, to);
    simulator.MouseUp();
}

void TurnWheel(wxWindow& window, WheelTurn turn, int notches)
{
    const wxSize size = window.GetClientSize();
    MoveTo(window, {size.x / 2, size.y / 2});
    Display* display = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
    const auto button = static_cast<unsigned>(turn);
    for (int i = 0; i < notches; ++i) {
        XTestFakeButtonEvent(display, button, True, CurrentTime);
        XTestFakeButtonEvent(display, button, False, CurrentTime);
    }
    XFlush(display);
}

void Grip(wxWindow& window, const wxPoint& from, const wxPoint& to)
{
    wxUIActionSimulator simulator;
    // A scroll bar becomes wide, and can be gripped, when the pointer comes near.
    for (int i = dragSteps; i >= 0; --i) {
        MoveTo(window, from - wxPoint(i, 0));
    }
    simulator.MouseDown();
    EXPECT_TRUE(WaitFor("gripped", [] { return gtk_grab_get_current() != nullptr; }));
    MoveOn(window, from, to);
}

void LetGo()
{
    wxUIActionSimulator().MouseUp();
    // Until the toolkit has seen it, it keeps all clicks to itself, also those of later tests.
    EXPECT_TRUE(WaitFor("let go", [] { return gtk_grab_get_current() == nullptr; }));
}
