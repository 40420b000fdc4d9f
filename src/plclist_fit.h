#pragma once

// How wide the columns of a list are. No windows. Any thread.

/// The width that a list's last column asks for: what the first two columns leave of the list, less
/// a margin that is subtracted last, so that it is negative when they leave nothing. All in pixels.
int LastColumnWidth(int virtualWidth, int firstWidth, int secondWidth);

/// Whether a column can have this width: 0 would hide it, and less is an error to the toolkit.
bool IsColumnWidth(int width);
