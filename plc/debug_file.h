#pragma once

#include "program.h"
#include "result.h"

#include <string>
#include <string_view>

// The program debug file: the listing of every block, as the debugger's program page reads it.
// Any thread.

namespace plc {

/// What a path prefix is followed by.
constexpr std::string_view debugFileSuffix = "_plcdbgi.dat";

/// The most bytes of a listing line; the page would split a longer one.
constexpr std::size_t maxLineBytes = 254;

/// The last first step and the most lines that a block's record has room for.
constexpr std::int32_t maxFirstStep = 65535;
constexpr std::size_t maxBlockLines = 65535;

/// Whether the program page gives a line of this text a step.
bool IsExecutable(std::string_view line);

/// The bytes of the file; none when the listing is too long for its offsets.
base::Result<std::string> DebugFileOf(const Program& program);

/// Whether the bytes are a program debug file, whole: every block and every line of it is there.
/// @return what is wrong with them.
base::Result<void> CheckDebugBytes(std::string_view bytes);

/// Replaces @p prefix + debugFileSuffix as a whole, or leaves it as it was.
base::Result<void> WriteDebugFile(const Program& program, const std::string& prefix);

} // namespace plc
