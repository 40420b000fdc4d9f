#pragma once

#include "ktapi.h"

#include <cstdio>

/// Opens a regular file for reading. A pipe, a device and a folder are none: they are not opened,
/// and nobody is waited for. Any thread.
/// @param path in the locale's encoding.
/// @return null, with the reason in errno, when it is not open.
KTCORE_API std::FILE* KtOpenFile(const char* path);
