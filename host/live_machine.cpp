#include "live_machine.h"

#include "live_window.h"

#include <utility>

namespace plchost {

LiveMachine::LiveMachine(std::unique_ptr<plclink::SoftPlc> plc, AnswerSink& answers, MachineLog log)
    : m_plant(plc->Machine()), m_link(std::move(plc)), m_bridge(answers, m_link, log),
      m_monitor(m_link, std::move(log.tell))
{
}

void LiveMachine::OnDebugger(bool open)
{
    if (!open) {
        m_bridge.Forget();
    }
}

std::unique_ptr<HostWindow>
LiveMachine::MakeWindow(const std::string& language, WindowActions actions)
{
    return std::make_unique<LiveWindow>(m_plant, m_monitor, language, std::move(actions));
}

} // namespace plchost
