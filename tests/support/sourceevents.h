#pragma once

#include "source.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What a source tells, kept for tests. Any thread.

class RecordedEvents : public plclink::SourceEvents
{
public:
    void OnReadings(
        const plclink::WatchList& list,
        const std::vector<plclink::PlacedReading>& readings) override
    {
        Note([&] {
            for (const plclink::PlacedReading& reading : readings) {
                m_values[plc::OperandName(list.at(reading.place))].push_back(reading.reading.value);
            }
        });
    }

    void OnUnreadable(const plc::Operand& operand, const std::string& reason) override
    {
        Note([&] { m_unreadable.emplace_back(plc::OperandName(operand), reason); });
    }

    void OnState(const plclink::LinkState& state) override
    {
        Note([&] { m_states.push_back(state); });
    }

    bool OnSteps(const plc::StepRange&, const std::vector<plc::StepState>&) override
    {
        Note([&] { ++m_stepCount; });
        return true;
    }

    /// How often step states have come.
    int StepCount() const
    {
        const std::lock_guard lock(m_mutex);
        return m_stepCount;
    }

    /// @return the newest value.
    std::optional<std::uint32_t> Value(const std::string& operand) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_values.find(operand);
        return found == m_values.end() ? std::nullopt : std::optional(found->second.back());
    }

    /// @return all values so far, in their order.
    std::vector<std::uint32_t> Values(const std::string& operand) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_values.find(operand);
        return found == m_values.end() ? std::vector<std::uint32_t>{} : found->second;
    }

    std::vector<std::pair<std::string, std::string>> Unreadable() const
    {
        const std::lock_guard lock(m_mutex);
        return m_unreadable;
    }

    /// @return whether the link has ever been in this state.
    bool HasBeen(const plclink::LinkState& state) const
    {
        const std::lock_guard lock(m_mutex);
        return std::find(m_states.begin(), m_states.end(), state) != m_states.end();
    }

    bool HasBeenLost() const
    {
        const std::lock_guard lock(m_mutex);
        return std::any_of(m_states.begin(), m_states.end(), [](const plclink::LinkState& state) {
            return state.status == plclink::LinkStatus::Lost;
        });
    }

    /// @return the newest state.
    plclink::LinkState State() const
    {
        const std::lock_guard lock(m_mutex);
        return m_states.empty() ? plclink::LinkState{} : m_states.back();
    }

    /// Forgets the values so far.
    void ForgetValues()
    {
        const std::lock_guard lock(m_mutex);
        m_values.clear();
    }

    /// Waits until the condition holds after some event, ticks without readings included.
    /// @return whether it came about within a generous time.
    bool WaitFor(const std::function<bool()>& condition)
    {
        constexpr std::chrono::seconds enough{60};
        const auto end = std::chrono::steady_clock::now() + enough;
        for (;;) {
            std::size_t seen = 0;
            {
                const std::lock_guard lock(m_mutex);
                seen = m_count;
            }
            if (condition()) {
                return true;
            }
            std::unique_lock lock(m_mutex);
            if (!m_changed.wait_until(lock, end, [&] { return m_count != seen; })) {
                lock.unlock();
                return condition();
            }
        }
    }

    bool WaitForValue(const std::string& operand, std::uint32_t value)
    {
        return WaitFor([&] { return Value(operand) == value; });
    }

    bool WaitForStatus(plclink::LinkStatus status)
    {
        return WaitFor([&] { return State().status == status; });
    }

    /// Another fact, which this is not told, has come about.
    void Wake()
    {
        Note([] {});
    }

private:
    template <typename What> void Note(const What& what)
    {
        {
            const std::lock_guard lock(m_mutex);
            what();
            ++m_count;
        }
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    std::size_t m_count = 0;
    std::map<std::string, std::vector<std::uint32_t>> m_values;
    std::vector<std::pair<std::string, std::string>> m_unreadable;
    int m_stepCount = 0;
    std::vector<plclink::LinkState> m_states;
};
