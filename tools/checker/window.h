#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <string>
#include <vector>

// The library's windows as the screen shows them: the checker knows nothing of what is inside.
// GUI thread.

namespace plccheck {

/// The one visible window that is no dialog; null when there is none.
GtkWindow* DebuggerWindow();

/// A visible dialog; null when there is none.
GtkWindow* OpenDialog();

/// The caption and the words of a dialog.
std::string DescribeDialog(GtkWindow* dialog);

/// Ends a dialog as confirmed.
void Confirm(GtkWindow* dialog);

/// What the screen shows of the window, in pixels.
std::vector<std::uint8_t> PictureOf(GtkWindow* window);

} // namespace plccheck
