#pragma once

#include "bridge.h"
#include "link_monitor.h"
#include "machine.h"
#include "machine_link.h"
#include "timers.h"

#include <functional>
#include <memory>
#include <string>

// A controller outside of this program, as a machine. GUI thread.

namespace plchost {

class DeviceMachine : public Machine
{
public:
    /// @param name for the window's title.
    /// @param remark what the window says of a machine of this kind.
    /// @param answers outlives the machine.
    /// @param tick runs a hundred times each second.
    /// @param log takes what could not be served, on any thread.
    DeviceMachine(
        std::unique_ptr<plclink::Source> device,
        std::string name,
        const char* HostTexts::*remark,
        AnswerSink& answers,
        std::function<void()> tick,
        MachineLog log);

    RequestHandler& Requests() override { return m_bridge; }

    plclink::MachineLink& Link() override { return m_link; }

    void OnDebugger(bool open) override;
    void Start() override;
    std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) override;

private:
    const std::string m_name;
    const char* HostTexts::*const m_remark;
    plclink::MachineLink m_link;
    Bridge m_bridge;
    LinkMonitor m_monitor;
    const std::function<void()> m_tick;
    Timers m_timers;
};

} // namespace plchost
