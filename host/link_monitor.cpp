#include "link_monitor.h"

#include <algorithm>
#include <utility>

namespace plchost {

namespace {

std::optional<std::chrono::milliseconds>
YoungestAge(const std::vector<plclink::WatchedOperand>& operands, plclink::Clock::time_point now)
{
    std::optional<std::chrono::milliseconds> youngest;
    for (const plclink::WatchedOperand& operand : operands) {
        if (operand.newest) {
            const auto age =
                std::chrono::duration_cast<std::chrono::milliseconds>(now - operand.newest->taken);
            youngest = std::min(youngest.value_or(age), age);
        }
    }
    return youngest;
}

} // namespace

LinkMonitor::LinkMonitor(plclink::MachineLink& link, Log log) : m_link(link), m_log(std::move(log))
{
    m_link.Join(*this);
}

LinkMonitor::~LinkMonitor()
{
    m_link.Leave(*this);
}

void LinkMonitor::OnState(const plclink::LinkState& state)
{
    const std::lock_guard lock(m_mutex);
    m_changes.push_back(state);
}

void LinkMonitor::Tell(const plclink::LinkState& state)
{
    if (!(state == m_told)) {
        m_told = state;
        m_log(StateSentence(state));
    }
}

LinkView LinkMonitor::Look()
{
    std::vector<plclink::LinkState> changes;
    {
        const std::lock_guard lock(m_mutex);
        changes.swap(m_changes);
    }
    for (const plclink::LinkState& state : changes) {
        m_reported = state;
        Tell(state);
    }
    const std::vector<plclink::WatchedOperand> watched = m_link.Watched();
    const auto now = plclink::Clock::now();
    const auto today = std::chrono::system_clock::now();
    const auto oldAge = OldAge(m_link.TurnTime());
    LinkView view;
    view.state = Judged(m_reported, YoungestAge(watched, now), oldAge);
    Tell(view.state);
    view.answersPerSecond = m_answers.Count(m_link.ReadingCount(), now);
    view.losses = m_link.Losses();
    for (const plclink::WatchedOperand& operand : watched) {
        view.operands.push_back(Shown(operand, oldAge, now, today));
    }
    return view;
}

} // namespace plchost
