#pragma once

#include <algorithm>
#include <cstddef>

// What the programs that are measured side by side show: the values of 20 operands, new ones every
// 100 ms. watch_labels.tcl has the same in its language.

namespace bench {

constexpr std::size_t shownValues = 20;
constexpr unsigned shownPeriodMs = 100;

/// Counts the ticks of a program. The values of one tick are held for some, then the program prints
/// the texts that it shows, so that they can be compared.
class ShownTick
{
public:
    void Next() { ++m_count; }

    /// @return the value of the operand MD<4 * place>, which a float holds without a rest.
    double Value(std::size_t place) const
    {
        const int number = m_count - std::clamp(m_count - printed, 0, held);
        return 100.0 * static_cast<double>(place + 1) + number % 800 / 8.0;
    }

    bool IsToPrint() const { return m_count == printed + held; }

private:
    static constexpr int printed = 10;
    static constexpr int held = 10;

    int m_count = 0;
};

} // namespace bench
