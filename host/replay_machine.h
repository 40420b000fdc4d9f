#pragma once

#include "machine.h"
#include "player.h"

#include <functional>
#include <sigc++/connection.h>

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
    ~ReplayMachine() override;
    ReplayMachine(const ReplayMachine&) = delete;
    ReplayMachine(ReplayMachine&&) = delete;
    ReplayMachine& operator=(const ReplayMachine&) = delete;
    ReplayMachine& operator=(ReplayMachine&&) = delete;

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
    sigc::connection m_timer;
};

} // namespace plchost
