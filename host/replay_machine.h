#pragma once

#include "machine.h"
#include "player.h"
#include "timers.h"

#include <functional>

// A recording in the place of a machine. GUI thread.

namespace plchost {

class ReplayMachine : public Machine
{
public:
    /// @param answers outlives the machine.
    /// @param tick runs a hundred times each second.
    /// @param log takes what could not be served.
    ReplayMachine(
        Recording recording,
        double speed,
        AnswerSink& answers,
        std::function<void()> tick,
        Player::Log log);

    RequestHandler& Requests() override { return m_player; }

    /// The time stands while no debugger is open.
    void OnDebugger(bool open) override;
    void Start() override;
    std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) override;

private:
    Player m_player;
    const std::function<void()> m_tick;
    bool m_isPlaying = false;
    Timers m_timers;
};

} // namespace plchost
