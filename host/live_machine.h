#pragma once

#include "bridge.h"
#include "link_monitor.h"
#include "machine.h"
#include "machine_link.h"
#include "soft_plc.h"

#include <memory>

// The machine that the host controls with its soft PLC. GUI thread.

namespace plchost {

class LiveMachine : public Machine
{
public:
    /// @param answers outlives the machine.
    /// @param log takes what could not be served, on any thread.
    LiveMachine(std::unique_ptr<plclink::SoftPlc> plc, AnswerSink& answers, MachineLog log);

    RequestHandler& Requests() override { return m_bridge; }

    plclink::MachineLink& Link() override { return m_link; }

    void OnDebugger(bool open) override;

    void Start() override { m_link.Start(); }

    std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) override;

private:
    plclink::Plant& m_plant; ///< Belongs to the link.
    plclink::MachineLink m_link;
    Bridge m_bridge;
    LinkMonitor m_monitor;
};

} // namespace plchost
