#pragma once

#include "device_machine.h"
#include "mqtt_source.h"
#include "settings.h"

#include <chrono>
#include <memory>
#include <string>

// A machine far away, as a machine: its listing comes when it has been reached. GUI thread.

namespace plchost {

/// The debugger waits no longer than this for a machine to say what it is.
constexpr std::chrono::seconds introductionTime{5};

class RemoteMachine : public DeviceMachine
{
public:
    /// @param source what @p machine points at.
    /// @param files get the machine's listing and, when there is none yet, a list of what it tells.
    /// Else see DeviceMachine.
    RemoteMachine(
        plcremote::MqttSource& source,
        std::unique_ptr<plcremote::MqttSource> machine,
        std::string name,
        ConfigFiles files,
        AnswerSink& answers,
        std::function<void()> tick,
        MachineLog log);

    void Start() override;
    bool IsReady() const override;
    base::Result<void> PrepareDebugger(const std::string& language) override;

private:
    plcremote::MqttSource& m_source; ///< Belongs to the link.
    const ConfigFiles m_files;
    plclink::Clock::time_point m_start;
};

} // namespace plchost
