#include "image.h"

#include <algorithm>

namespace plc {

void Timer::Run(std::int16_t units)
{
    m_left = timerUnit * std::max<int>(units, 0);
    m_running = true;
}

void Timer::Drive(TimerKind kind, bool input, std::int16_t units)
{
    const bool rising = input && !m_input;
    const bool falling = !input && m_input;
    m_kind = kind;
    m_input = input;
    if (kind == TimerKind::OffDelay) {
        if (input) {
            Reset();
        } else if (falling) {
            Run(units);
        }
        m_output = m_output || input || falling;
    } else if (rising) {
        m_output = kind == TimerKind::Pulse;
        Run(units);
    } else if (!input) {
        Reset();
    }
    if (m_running && m_left.count() == 0) {
        Expire();
    }
}

void Timer::Reset()
{
    m_running = false;
    m_left = {};
    m_output = false;
}

void Timer::Advance(std::chrono::milliseconds elapsed)
{
    if (!m_running) {
        return;
    }
    m_left = std::max(m_left - elapsed, std::chrono::milliseconds{0});
    if (m_left.count() == 0) {
        Expire();
    }
}

void Timer::Expire()
{
    m_running = false;
    m_output = m_kind == TimerKind::OnDelay;
}

std::uint16_t Timer::Value() const
{
    return static_cast<std::uint16_t>(
        (m_left + timerUnit - std::chrono::milliseconds{1}) / timerUnit);
}

void Timer::SetValue(std::uint16_t units)
{
    if (m_running) {
        m_left = timerUnit * std::min(units, maxCount);
    }
}

void Counter::Up(bool input)
{
    if (input && !m_upInput && m_value < maxCount) {
        ++m_value;
    }
    m_upInput = input;
}

void Counter::Down(bool input)
{
    if (input && !m_downInput && m_value > 0) {
        --m_value;
    }
    m_downInput = input;
}

void Counter::Set(bool input, std::int16_t value)
{
    if (input && !m_setInput) {
        m_value = static_cast<std::uint16_t>(std::max<int>(value, 0));
    }
    m_setInput = input;
}

void Counter::SetValue(std::uint16_t value)
{
    m_value = std::min(value, maxCount);
}

} // namespace plc
