#pragma once

#include "reading.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

// How old is what comes from far away, judged by durations alone: no two clocks are ever compared.
// One thread.

namespace plcremote {

/// How much later than the quickest of the last minute a message has come.
class Lateness
{
public:
    /// @param running time that the sender runs, when it sent.
    /// @return zero for the quickest.
    std::chrono::milliseconds
    Take(std::chrono::milliseconds running, plclink::Clock::time_point came);

private:
    struct Transit
    {
        plclink::Clock::time_point came;
        plclink::Clock::duration time; ///< More or less by what both began apart.
    };

    std::deque<Transit> m_quickest; ///< Rising times; the first is the quickest.
};

/// Counts what is missing in a numbered sequence.
class Sequence
{
public:
    enum class Step
    {
        First, ///< Or one that begins anew: another session.
        Next,
        Hole, ///< Some before it are missing.
        Old   ///< Not newer than the last one: not to be used.
    };

    Step Take(std::uint64_t number);

    /// Another sequence begins; what was lost stays counted.
    void Restart() { m_last.reset(); }

    std::uint64_t LostCount() const { return m_lost; }

private:
    std::optional<std::uint64_t> m_last;
    std::uint64_t m_lost = 0;
};

} // namespace plcremote
