#pragma once

#include "bridge.h"
#include "link_monitor.h"
#include "machine.h"
#include "machine_link.h"
#include "player.h"
#include "timers.h"

#include <functional>
#include <memory>

// A recording in the place of a machine. GUI thread.

namespace plchost {

class ReplayMachine : public Machine
{
public:
    /// @param answers outlives the machine.
    /// @param tick runs a hundred times each second.
    /// @param log takes what could not be served.
    ReplayMachine(
        std::unique_ptr<Player> player,
        AnswerSink& answers,
        std::function<void()> tick,
        MachineLog log);

    RequestHandler& Requests() override { return m_bridge; }

    plclink::MachineLink& Link() override { return m_link; }

    /// The time stands while no debugger is open.
    void OnDebugger(bool open) override;
    void Start() override;
    std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) override;

private:
    Player& m_player; ///< Belongs to the link.
    plclink::MachineLink m_link;
    Bridge m_bridge;
    LinkMonitor m_monitor;
    const std::function<void()> m_tick;
    bool m_isPlaying = false;
    Timers m_timers;
};

} // namespace plchost
