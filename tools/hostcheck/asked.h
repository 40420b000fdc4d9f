#pragma once

#include "operand.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a host is asked for: operands and steps. Values. Any thread.

namespace hostcheck {

/// The operands of a variable list that exist, as many as the debugger watches.
std::vector<std::string> OperandsOf(std::string_view listFile);

/// One operand of each area and size, some of them twice.
std::vector<std::string> UsualOperands();

/// The operands of the list that the configuration beside a path prefix names, or else the usual
/// ones.
std::vector<std::string> OperandsFor(const std::string& prefix);

/// Steps of a block, both ends included.
struct Steps
{
    std::int32_t first;
    std::int32_t last;
};

inline bool operator==(const Steps& a, const Steps& b)
{
    return a.first == b.first && a.last == b.last;
}

/// "the steps 4 to 9".
std::string Describe(const Steps& steps);

/// The steps of each block that has any, as many of them as a page shows.
/// @param debugFile the bytes of a program debug file.
/// @return nothing when they hold no block.
std::optional<std::vector<Steps>> StepsOf(std::string_view debugFile);

} // namespace hostcheck
