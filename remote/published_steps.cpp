#include "published_steps.h"

#include <utility>

namespace plcremote {

PublishedSteps::PublishedSteps(plclink::MachineLink& link, Viewers& viewers, AnswerViewer answer)
    : m_link(link), m_viewers(viewers), m_answer(std::move(answer))
{
    m_link.Join(*this);
}

PublishedSteps::~PublishedSteps()
{
    m_link.Leave(*this);
}

void PublishedSteps::Serve()
{
    const auto before = m_viewer;
    const auto viewer = m_viewers.StepsViewer();
    const auto range = m_viewers.Steps();
    if (before && viewer && !(before == viewer)) {
        m_answer(
            *before,
            RefusalMessage{RefusalMessage::Of::Steps, "they go to " + viewer->user + " now"});
    }
    SetViewer(viewer);
    const bool isSame =
        range.has_value() == m_asked.has_value() &&
        (!range || (range->first == m_asked->first && range->last == m_asked->last));
    if (!isSame) {
        m_asked = range;
        m_link.WatchSteps(*this, range);
    }
}

void PublishedSteps::Turn(Time now)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(m_areTaken, false)) {
            return;
        }
    }
    if (const auto viewer = m_viewers.StepsViewer()) {
        m_answer(
            *viewer,
            RefusalMessage{RefusalMessage::Of::Steps, "they are shown at the machine now"});
        m_viewers.WatchSteps(*viewer, std::nullopt, now);
        m_asked.reset();
        SetViewer(std::nullopt);
    }
}

void PublishedSteps::Tell()
{
    std::optional<StepStatesMessage> newest;
    {
        const std::lock_guard lock(m_mutex);
        newest.swap(m_newest);
    }
    if (newest && m_viewer) {
        m_answer(*m_viewer, *newest);
    }
}

void PublishedSteps::LetGo()
{
    m_asked.reset();
    m_link.WatchSteps(*this, std::nullopt);
    SetViewer(std::nullopt);
}

std::string PublishedSteps::User() const
{
    const std::lock_guard lock(m_mutex);
    return m_viewer ? m_viewer->user : "";
}

bool PublishedSteps::OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states)
{
    const std::lock_guard lock(m_mutex);
    m_newest = StepStatesMessage{range, states};
    return true;
}

void PublishedSteps::OnStepsTaken()
{
    const std::lock_guard lock(m_mutex);
    m_areTaken = true;
}

void PublishedSteps::SetViewer(std::optional<Viewer> viewer)
{
    const std::lock_guard lock(m_mutex);
    m_viewer = std::move(viewer);
}

} // namespace plcremote
