#pragma once

#include "result.h"

#include <string>
#include <string_view>

// Files as a whole. Any thread.

namespace base {

/// @return the bytes of a file, or a sentence that names it.
Result<std::string> ReadFile(const std::string& path);

/// Replaces a file by @p bytes, or creates it: whole or not at all, also when the disk is full or
/// the power fails. The file's mode stays; of a symbolic link, the file behind it is replaced, also
/// one that does not exist yet.
/// @return why nothing was replaced: the disk is full, the folder or the file write-protected, the
///         path no regular file's.
Result<void> ReplaceFile(const std::string& path, std::string_view bytes);

} // namespace base
