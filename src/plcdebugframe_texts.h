#pragma once

#include <wx/string.h>

// Texts that the frame makes of others: a directory, labels of its menu. No windows. Any thread.

/// @return the directory of the configuration file: of "/a/b/prog" and "/a/b/c/" alike it is
///         "/a/b". A prefix without a '/' is returned whole.
wxString StartDirectory(wxString pathPrefix);

/// @return @p text, or a blank for an empty one, for which the toolkit would take a label and an
///         accelerator of its own or refuse the menu.
wxString MenuLabel(const wxString& text);

/// The label of a menu item, with its accelerator; none for an empty letter and for "...".
wxString ItemLabel(const wxString& label, const wxString& acceleratorLetter);
