#pragma once

#include <wx/window.h>

// What the operator does with the mouse beside clicking: real input through the X server. What it
// leads to is there only after a WaitFor(). GUI thread.

enum class WheelTurn
{
    Up = 4, ///< The wheel's turns are buttons of the mouse.
    Down = 5,
    Left = 6,
    Right = 7
};

/// Turns the wheel by so many notches over the middle of a window.
void TurnWheel(wxWindow& window, WheelTurn turn, int notches);

/// Draws the mouse from one place in a window to another with the left button held.
void Drag(wxWindow& window, const wxPoint& from, const wxPoint& to);

/// Takes hold of a scroll bar by the mouse at a place in a window and draws it to another.
void Grip(wxWindow& window, const wxPoint& from, const wxPoint& to);

/// Lets go of it.
void LetGo();
