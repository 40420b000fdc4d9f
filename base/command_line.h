#pragma once

#include <optional>

// The command lines of all programs. The thread of main().

namespace CLI {
class App;
}

namespace base {

/// The status that a program ends with when its command line is wrong.
constexpr int exitUsage = 2;

/// Reads a command line. Says what is wrong with it on standard error, in one line that begins with
/// the program's name, and gives help and version on standard output.
/// @param argv as handed to main().
/// @return the status to end with at once; nothing when the program is to go on.
std::optional<int> ReadCommandLine(CLI::App& app, int argc, const char* const* argv);

} // namespace base
