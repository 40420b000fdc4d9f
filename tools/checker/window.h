#pragma once

#include "picture.h"

#include <gtk/gtk.h>

#include <string>
#include <vector>

// The library's windows as the screen shows them: the checker knows nothing of what is inside.
// GUI thread.

namespace plccheck {

/// The one visible window that is no dialog, and not the host's; null when there is none.
GtkWindow* DebuggerWindow();

/// A visible dialog; null when there is none.
GtkWindow* OpenDialog();

/// The caption and the words of a dialog.
std::string DescribeDialog(GtkWindow* dialog);

/// Ends a dialog as confirmed.
void Confirm(GtkWindow* dialog);

/// What the screen shows of the window.
Picture PictureOf(GtkWindow* window);

/// Every top-level window of the process, hidden ones too.
std::size_t CountWindows();

/// Turns to a page of the window's notebook.
/// @return false when it has none, or not so many pages.
bool TurnToPage(GtkWindow* window, int page);

/// Chooses the last item of the window's first menu.
/// @return false when there is none.
bool ChooseExit(GtkWindow* window);

/// Lets the window have the keyboard, as far as it can tell: a window manager need not run.
void GiveKeyboard(GtkWindow* window);

/// Types one character into the window as a keyboard does.
void Type(GtkWindow* window, unsigned key);

} // namespace plccheck
