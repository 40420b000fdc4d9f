#include "replay_machine.h"

#include "replay_window.h"

#include <utility>

namespace plchost {

ReplayMachine::ReplayMachine(
    std::unique_ptr<Player> player, AnswerSink& answers, std::function<void()> tick, MachineLog log)
    : m_player(*player), m_link(std::move(player)), m_bridge(answers, m_link, log),
      m_monitor(m_link, std::move(log.tell)), m_tick(std::move(tick))
{
}

void ReplayMachine::OnDebugger(bool open)
{
    m_isPlaying = open;
    if (!open) {
        m_bridge.Forget();
        m_player.Pause();
    }
}

void ReplayMachine::Start()
{
    m_link.Start();
    m_timers.Every(tickMs, [this] {
        if (m_isPlaying) {
            m_player.Advance(Player::Clock::now());
        }
        m_tick();
    });
}

std::unique_ptr<HostWindow>
ReplayMachine::MakeWindow(const std::string& language, WindowActions actions)
{
    return std::make_unique<ReplayWindow>(m_player, m_monitor, language, std::move(actions));
}

} // namespace plchost
