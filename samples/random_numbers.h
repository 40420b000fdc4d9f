#pragma once

#include <cstdint>

// Chance for the simulated processes: the same in every run. One thread.

namespace samples {

class RandomNumbers
{
public:
    /// Evenly spread over all 32 bits.
    std::uint32_t Next()
    {
        constexpr std::uint32_t factor = 1664525;
        constexpr std::uint32_t summand = 1013904223;
        m_state = m_state * factor + summand;
        // The low bits of such a row of numbers repeat early.
        constexpr unsigned goodBits = 16;
        const std::uint32_t high = m_state >> goodBits;
        m_state = m_state * factor + summand;
        return high << goodBits | m_state >> goodBits;
    }

    /// True once in @p average seconds, when asked every @p elapsed seconds.
    bool HappensOnceIn(double average, double elapsed)
    {
        constexpr double all = 4294967296.0;
        return Next() / all < elapsed / average;
    }

    /// From 0 to @p count - 1.
    std::uint32_t Below(std::uint32_t count) { return Next() % count; }

private:
    std::uint32_t m_state = 1;
};

} // namespace samples
