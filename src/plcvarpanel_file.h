#pragma once

#include "plcdebugvar.h"

#include <wx/arrstr.h>

#include <optional>
#include <vector>

// The watch list's file: one line of text per variable. No windows. GUI thread.

/// What a line of a list file says, before its address is checked.
struct ListLine
{
    PlcDebugVar var;   ///< Without address and request id.
    wxString address;  ///< Still to be checked against @c var.
    bool valid = true; ///< False when size or format letter is wrong.
};

/// @return nothing when the line is no operand line at all.
std::optional<ListLine> ParseListLine(wxString line);

/// @return the lines of a text file in any encoding with a byte-order mark or in UTF-8, with any
///         line ends; nothing when the file cannot be opened, is no regular file or has more than
///         1 MB.
std::optional<wxArrayString> ReadListFile(const wxString& path);

/// @return the text of a list file; ends before the first variable that has no name.
wxString ListFileText(const std::vector<PlcDebugVar>& vars);

/// Replaces a file by @p text in UTF-8, whole or not at all; see KtReplaceFile().
/// @return false when the file is as it was.
bool WriteListFile(const wxString& path, const wxString& text);
