#pragma once

#include <functional>
#include <sigc++/connection.h>
#include <vector>

// Timers that end with their owner. GUI thread.

namespace plchost {

/// The pace of what a soft PLC does in each cycle, for machines without cycles.
constexpr unsigned tickMs = 10;

class Timers
{
public:
    Timers() = default;
    ~Timers();
    Timers(const Timers&) = delete;
    Timers(Timers&&) = delete;
    Timers& operator=(const Timers&) = delete;
    Timers& operator=(Timers&&) = delete;

    /// Does @p work again and again, as long as that returns true.
    void While(unsigned milliseconds, const std::function<bool()>& work);
    void Every(unsigned milliseconds, const std::function<void()>& work);
    void Once(unsigned milliseconds, const std::function<void()>& work);
    /// Does @p work once, when the main loop has nothing else to do.
    void WhenIdle(const std::function<void()>& work);

private:
    std::vector<sigc::connection> m_timers;
};

} // namespace plchost
