#include "cycle_time.h"

#include <algorithm>
#include <utility>

namespace plc {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds longestHoldUp{100};

} // namespace

CycleTime::CycleTime(Clock::time_point begin, milliseconds period)
    : m_begin(begin), m_longest(std::max(longestHoldUp, 2 * period))
{
}

milliseconds CycleTime::Pass(Clock::time_point now)
{
    // Whole milliseconds since the beginning, so that no rounding adds up.
    const auto passed = std::chrono::duration_cast<milliseconds>(now - m_begin);
    return std::min(passed - std::exchange(m_passed, passed), m_longest);
}

} // namespace plc
