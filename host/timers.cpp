#include "timers.h"

#include <glibmm/main.h>

namespace plchost {

Timers::~Timers()
{
    for (sigc::connection& timer : m_timers) {
        timer.disconnect();
    }
}

void Timers::While(unsigned milliseconds, const std::function<bool()>& work)
{
    m_timers.push_back(Glib::signal_timeout().connect(work, milliseconds));
}

void Timers::Every(unsigned milliseconds, const std::function<void()>& work)
{
    While(milliseconds, [work] { return work(), true; });
}

void Timers::Once(unsigned milliseconds, const std::function<void()>& work)
{
    While(milliseconds, [work] { return work(), false; });
}

void Timers::WhenIdle(const std::function<void()>& work)
{
    m_timers.push_back(Glib::signal_idle().connect([work] { return work(), false; }));
}

} // namespace plchost
