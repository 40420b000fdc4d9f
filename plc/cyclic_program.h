#pragma once

#include "image.h"
#include "steps.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What a controller runs: a program that is worked through once per cycle. PLC thread.

namespace plc {

/// Why a program stopped the PLC.
enum class StopCause : std::uint8_t
{
    CycleTooLong,
    JumpOutOfBounds, ///< Also the call of a block that does not exist.
    DivisionByZero,
    CallsTooDeep
};

struct StopReason
{
    StopCause cause;
    std::string place; ///< Block and line, as in "PB10, line 12"; lines count from 1 in the block.
};

/// One English sentence, as in "division by zero in PB10, line 12".
std::string StopText(const StopReason& reason);

/// The most steps that can be watched at once.
constexpr std::size_t maxWatchedSteps = 1024;

class CyclicProgram
{
public:
    CyclicProgram() = default;
    CyclicProgram(const CyclicProgram&) = delete;
    CyclicProgram(CyclicProgram&&) = delete;
    CyclicProgram& operator=(const CyclicProgram&) = delete;
    CyclicProgram& operator=(CyclicProgram&&) = delete;
    virtual ~CyclicProgram() = default;

    /// Works the program through once. @p elapsed is the time since the last cycle.
    /// @return a reason when the PLC has to stop.
    virtual std::optional<StopReason> RunCycle(Image& image, std::chrono::milliseconds elapsed) = 0;

    /// Records these steps from the next cycle on instead of the ones before; steps watched before
    /// keep what they have recorded. Nothing ends it.
    /// @return false, and nothing watched, for a range upside down or of more than maxWatchedSteps.
    virtual bool Watch(std::optional<StepRange> range) = 0;

    /// One state for each watched step, in order; the default for a step that was not worked
    /// through since it is watched, or that the program does not have.
    virtual const std::vector<StepState>& WatchedStates() const = 0;
};

} // namespace plc
