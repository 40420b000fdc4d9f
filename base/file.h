#pragma once

#include "result.h"

#include <cstdio>
#include <string>
#include <string_view>

// Files as a whole. Any thread.

namespace base {

/// Opens a regular file for reading. A pipe, a device and a folder are none: they are not opened,
/// and nobody is waited for.
/// @return null, with the reason in errno, when it is not open.
std::FILE* OpenFile(const char* path);

/// @return the bytes of a regular file, or a sentence that names it.
Result<std::string> ReadFile(const std::string& path);

/// Replaces a file by @p bytes, or creates it: whole or not at all, also when the disk is full or
/// the power fails. The file's owner, group and mode stay, as far as this process may give them,
/// and at no moment may more people read it than before. Of a symbolic link, the file behind it is
/// replaced, also one that does not exist yet; but not where anybody may have put the link: in a
/// sticky folder it has to belong to this process or to the folder's owner.
/// @return why nothing was replaced: the disk is full, the folder or the file write-protected, the
///         path no regular file's.
Result<void> ReplaceFile(const std::string& path, std::string_view bytes);

} // namespace base
