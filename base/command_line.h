#pragma once

#include <optional>
#include <string>

// The command lines of all programs, and what they say to who has given them.

namespace CLI {
class App;
}

namespace base {

/// The status that a program ends with when its command line is wrong.
constexpr int exitUsage = 2;

/// Reads a command line. Says what is wrong with it on standard error, in one line that begins with
/// the program's name, and gives help and version on standard output.
/// @param argv as handed to main(). The thread of main().
/// @return the status to end with at once; nothing when the program is to go on.
std::optional<int> ReadCommandLine(CLI::App& app, int argc, const char* const* argv);

/// Writes "PROGRAM: SENTENCE" on standard error, as one line whoever tells something meanwhile. Any
/// thread.
void Tell(const std::string& program, const std::string& sentence);

} // namespace base
