#pragma once

#include "result.h"

#include <string>
#include <vector>

// What a library's file says of itself. Any thread.

namespace plccheck {

/// The names of functions and variables that a library offers to whoever loads it.
/// @param path an ELF file of this program's architecture.
base::Result<std::vector<std::string>> ExportsOf(const std::string& path);

} // namespace plccheck
