#include "device_machine.h"

#include "device_window.h"

#include <utility>

namespace plchost {

DeviceMachine::DeviceMachine(
    std::unique_ptr<plclink::Source> device,
    std::string name,
    const char* HostTexts::*remark,
    AnswerSink& answers,
    std::function<void()> tick,
    MachineLog log)
    : m_name(std::move(name)), m_remark(remark), m_link(std::move(device)),
      m_bridge(answers, m_link, log), m_monitor(m_link, std::move(log.tell)),
      m_tick(std::move(tick))
{
}

void DeviceMachine::OnDebugger(bool open)
{
    if (!open) {
        m_bridge.Forget();
    }
}

void DeviceMachine::Start()
{
    m_link.Start();
    m_timers.Every(tickMs, m_tick);
}

std::unique_ptr<HostWindow>
DeviceMachine::MakeWindow(const std::string& language, WindowActions actions)
{
    return std::make_unique<DeviceWindow>(
        m_name, m_remark, m_monitor, language, std::move(actions));
}

} // namespace plchost
