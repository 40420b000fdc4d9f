#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <string>
#include <utility>

// The names of the X library, whose header defines macros that nobody can live with.
using XDisplay = struct _XDisplay; // NOLINT(bugprone-reserved-identifier): the library's own name
using XWindow = unsigned long;
using XKey = unsigned long;

/// A place inside a top-level window, wherever the window manager has put that.
struct Spot
{
    XWindow window;
    int x;
    int y;
};

/// GUI thread. @return false also for no widget.
bool IsOnScreen(GtkWidget* widget);

/// GUI thread. @return the X window of the top-level window in which a widget lies.
XWindow TopLevelWindowOf(GtkWidget* widget);

/// GUI thread. @return the middle of a widget that is on the screen.
Spot MiddleOf(GtkWidget* widget);

/// GUI thread. @return the place @p x, @p y inside a widget that is on the screen.
Spot PlaceIn(GtkWidget* widget, int x, int y);

/// The hands of the operator: real mouse and keyboard events, through an X connection of their own.
/// What they lead to is there only after a wait. Test thread; Press() and Type() also on the GUI
/// thread while that one waits, so that the window finds all keys at once. A failure to reach a
/// window fails the running test.
class Operator
{
public:
    Operator();
    ~Operator();
    Operator(const Operator&) = delete;
    Operator(Operator&&) = delete;
    Operator& operator=(const Operator&) = delete;
    Operator& operator=(Operator&&) = delete;

    /// A click; never taken for the second half of a double click.
    /// @param held the modifier key held meanwhile, 0 for none. What an earlier click leads to must
    ///        have been awaited: while the window manager still holds that one back, this one waits
    ///        behind it and the key is released before.
    void Click(const Spot& spot, XKey held = 0);

    /// Presses a mouse button, or turns the wheel, at a place of the screen, whatever lies there.
    /// @param times in quick succession.
    void PressButton(int x, int y, unsigned button, int times);

    /// Presses and releases a key, into whatever window has the keyboard.
    void Press(XKey key, XKey held = 0);
    void Type(const std::string& ascii);

    /// Holds the pointer, as another program does while it has a menu open; until released.
    testing::AssertionResult HoldPointer();
    void ReleasePointer();

    /// Makes a window the active one, as a click into the task list does, and waits until it is.
    testing::AssertionResult Activate(GtkWidget* topLevel);

    /// Asks the window manager to close a window, as its close box does.
    void CloseThroughManager(XWindow window);

    /// @return width and height of a window with all that the window manager has drawn around it.
    std::pair<int, int> OuterSize(XWindow window);

private:
    void MoveOver(const Spot& spot);
    void Button(unsigned button);
    void Key(XKey key, bool down);
    XWindow FrameAround(XWindow window);
    bool PointerIsOver(XWindow window);
    void TellManager(const char* message, XWindow window, long first, long second);

    XDisplay* m_display;
};
