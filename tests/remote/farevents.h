#pragma once

#include "sourceevents.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace plcremote {

/// What a source tells, with the times of its readings and with steps.
class FarEvents : public RecordedEvents
{
public:
    void OnReadings(
        const plclink::WatchList& list,
        const std::vector<plclink::PlacedReading>& readings) override
    {
        {
            const std::lock_guard lock(m_mutex);
            for (const auto& [place, reading] : readings) {
                const auto first = m_first.try_emplace(reading.value, reading.taken);
                m_newest[plc::OperandName(list[place])] = reading.taken;
                static_cast<void>(first);
            }
        }
        RecordedEvents::OnReadings(list, readings);
    }

    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) override
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_refusals > 0) {
                --m_refusals;
                return false;
            }
            m_steps = {range, states};
        }
        Wake();
        return true;
    }

    /// When the machine had this value, as it was said first.
    plclink::Clock::time_point Taken(std::uint32_t value) const
    {
        const std::lock_guard lock(m_mutex);
        return m_first.at(value);
    }

    plclink::Clock::time_point NewestTaken(const std::string& operand) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_newest.find(operand);
        return found == m_newest.end() ? plclink::Clock::time_point{} : found->second;
    }

    std::vector<plc::StepState> Steps() const
    {
        const std::lock_guard lock(m_mutex);
        return m_steps.second;
    }

    /// Takes no steps so many times.
    void RefuseSteps(int times)
    {
        const std::lock_guard lock(m_mutex);
        m_refusals = times;
    }

private:
    mutable std::mutex m_mutex;
    std::map<std::uint32_t, plclink::Clock::time_point> m_first;
    std::map<std::string, plclink::Clock::time_point> m_newest;
    std::pair<plc::StepRange, std::vector<plc::StepState>> m_steps;
    int m_refusals = 0;
};

} // namespace plcremote
