#pragma once

#include <chrono>

// The time that passes for a program and its process. One thread.

namespace plc {

/// The period of a PLC that nobody has given another one.
constexpr std::chrono::milliseconds usualCycle{10};

class CycleTime
{
public:
    using Clock = std::chrono::steady_clock;

    CycleTime(Clock::time_point begin, std::chrono::milliseconds period);

    /// @return the time since the last call, or since the beginning. A machine that was held up for
    ///         long goes on where it was instead of making up for the time.
    std::chrono::milliseconds Pass(Clock::time_point now);

private:
    const Clock::time_point m_begin;
    const std::chrono::milliseconds m_longest;
    std::chrono::milliseconds m_passed{0}; ///< Since the beginning.
};

} // namespace plc
