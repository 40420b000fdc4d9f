#pragma once

#include "plcdebug_loader.h"
#include "result.h"

#include <string>

// Finds the debugger library and the host's data, and loads the library. No windows. Any thread.

namespace plchost {

/// A loaded debugger library. It stays loaded until the process ends.
struct Plugin : PLC_DEBUGGER
{
    std::string path;
};

/// The library that belongs to a program: the first of ../lib, the multi-architecture folder in it
/// and the program's own folder that holds a libplcdebug.so.
/// @param programFolder the folder in which the program itself lies.
/// @return its path, or where it was looked for.
base::Result<std::string> FindPlugin(const std::string& programFolder);

/// The folder with the language files and samples that belongs to a program: ../share/plcdebug.
/// @return its path, or where it was looked for.
base::Result<std::string> FindDataFolder(const std::string& programFolder);

/// @return the library, or the step that failed, the thing, the cure.
base::Result<Plugin> LoadPlugin(const std::string& path);

} // namespace plchost
