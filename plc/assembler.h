#pragma once

#include "program.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Statement list in, program out. Any thread.

namespace plc {

/// One mistake in a source.
struct SourceError
{
    std::string file;
    std::size_t line;   ///< From 1.
    std::size_t column; ///< From 1, in characters.
    std::string message;
};

/// "bottling.il:12:5: expected a bit operand such as E0.0, found EB10"
std::string ErrorText(const SourceError& error);

struct Assembly
{
    std::optional<Program> program;  ///< None when there are errors.
    std::vector<SourceError> errors; ///< All of the source, by line and column.
};

/// @param file the name that errors carry.
Assembly Assemble(std::string_view source, const std::string& file);

/// As Assemble(); a file that cannot be read is an error at line 0.
Assembly AssembleFile(const std::string& path);

} // namespace plc
