#pragma once

#include <wx/dialog.h>
#include <wx/string.h>

// Dialogs as the tests name them. GUI thread.

/// @return "message [caption] words", "question [caption] words", "file dialog [words]" or
///         "dialog [title]".
wxString InWords(wxDialog& dialog);

/// @return a box as InWords() has it.
/// @param kind "message" or "question".
wxString BoxInWords(const char* kind, const wxString& caption, const wxString& words);
