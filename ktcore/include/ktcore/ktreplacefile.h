#pragma once

#include "ktapi.h"

#include <wx/string.h>

#include <string>

/// Replaces a file by @p bytes, or creates it: whole or not at all, also when the disk is full or
/// the power fails. The file's owner, group and mode stay; of a symbolic link, the file behind it
/// is replaced, also one that does not exist yet. Shows nothing. Any thread.
/// @return false when nothing was replaced: the disk is full, the directory or the file
///         write-protected, the path no regular file's or no name in this locale.
KTCORE_API bool KtReplaceFile(const wxString& path, const std::string& bytes);
