#include "freshness.h"

namespace plcremote {

namespace {

/// How long a quick message is remembered: long enough that a broker is quick once, short enough
/// that clocks which run apart a little do not matter.
constexpr std::chrono::seconds memory{60};

} // namespace

std::chrono::milliseconds
Lateness::Take(std::chrono::milliseconds running, plclink::Clock::time_point came)
{
    const auto time = came.time_since_epoch() - running;
    while (!m_quickest.empty() && m_quickest.back().time >= time) {
        m_quickest.pop_back();
    }
    m_quickest.push_back({came, time});
    while (came - m_quickest.front().came > memory) {
        m_quickest.pop_front();
    }
    return std::chrono::duration_cast<std::chrono::milliseconds>(time - m_quickest.front().time);
}

Sequence::Step Sequence::Take(std::uint64_t number)
{
    if (!m_last) {
        m_last = number;
        return Step::First;
    }
    if (number <= *m_last) {
        return Step::Old;
    }
    const std::uint64_t missing = number - *m_last - 1;
    m_last = number;
    m_lost += missing;
    return missing == 0 ? Step::Next : Step::Hole;
}

} // namespace plcremote
