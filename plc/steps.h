#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

// The steps of a program and what they leave behind. Any thread.

namespace plc {

/// Steps first to last, both included.
struct StepRange
{
    std::int32_t first;
    std::int32_t last;
};

/// 0 for a range upside down.
std::size_t CountSteps(const StepRange& steps);

/// What a listing line left behind when it was last worked through.
struct StepState
{
    bool logicResult = false;                ///< After the line.
    std::optional<std::int32_t> accumulator; ///< After the line; none where it does not use it.
};

bool operator==(const StepState& a, const StepState& b);

} // namespace plc
