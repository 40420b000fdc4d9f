#include "machine_link.h"

#include <algorithm>
#include <utility>

namespace plclink {

MachineLink::MachineLink(std::unique_ptr<Source> source)
    : m_list(std::make_shared<const WatchList>()), m_tellsEveryReading(source->TellsEveryReading()),
      m_source(std::move(source))
{
}

MachineLink::~MachineLink() = default;

void MachineLink::Start()
{
    m_source->Start(*this);
}

void MachineLink::Join(Client& client)
{
    const std::lock_guard lock(m_mutex);
    m_clients.push_back(&client);
}

void MachineLink::Leave(Client& client)
{
    WatchSteps(client, std::nullopt);
    const std::lock_guard lock(m_mutex);
    m_clients.erase(std::remove(m_clients.begin(), m_clients.end(), &client), m_clients.end());
}

LinkState MachineLink::State() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

base::Result<void> MachineLink::Check(const plc::Operand& operand) const
{
    return m_source->Check(operand);
}

void MachineLink::Watch(Watcher& watcher, const plc::Operand& operand)
{
    const std::lock_guard lock(m_mutex);
    m_someAreDue = true;
    if (Slot* slot = Find(operand)) {
        slot->listeners.push_back({&watcher, true});
        return;
    }
    auto list = std::make_shared<WatchList>(*m_list);
    list->push_back(operand);
    m_slots.push_back({{{&watcher, true}}});
    m_list = std::move(list);
    m_source->Watch(m_list);
}

std::optional<std::size_t> MachineLink::PlaceOf(const plc::Operand& operand) const
{
    const auto found = std::find(m_list->begin(), m_list->end(), operand);
    if (found == m_list->end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - m_list->begin());
}

MachineLink::Slot* MachineLink::Find(const plc::Operand& operand)
{
    const auto place = PlaceOf(operand);
    return place ? &m_slots[*place] : nullptr;
}

std::optional<Reading> MachineLink::Newest(const plc::Operand& operand) const
{
    const std::lock_guard lock(m_mutex);
    const auto place = PlaceOf(operand);
    return place ? m_slots[*place].newest : std::nullopt;
}

std::vector<WatchedOperand> MachineLink::Watched() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<WatchedOperand> watched;
    for (std::size_t place = 0; place < m_slots.size(); ++place) {
        watched.push_back({(*m_list)[place], m_slots[place].newest, m_slots[place].refusal});
    }
    return watched;
}

std::uint64_t MachineLink::ReadingCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_readingCount;
}

void MachineLink::Unwatch(const Watcher& watcher)
{
    const std::lock_guard lock(m_mutex);
    for (std::size_t place = 0; place < m_slots.size(); ++place) {
        auto& listeners = m_slots[place].listeners;
        const auto listener =
            std::find_if(listeners.begin(), listeners.end(), [&watcher](const Listener& candidate) {
                return candidate.watcher == &watcher;
            });
        if (listener == listeners.end()) {
            continue;
        }
        listeners.erase(listener);
        if (listeners.empty()) {
            auto list = std::make_shared<WatchList>(*m_list);
            list->erase(list->begin() + static_cast<std::ptrdiff_t>(place));
            m_slots.erase(m_slots.begin() + static_cast<std::ptrdiff_t>(place));
            m_list = std::move(list);
            m_source->Watch(m_list);
        }
        return;
    }
}

void MachineLink::Write(const plc::Operand& operand, std::uint32_t value, WriteDone done)
{
    m_source->Write(operand, value, std::move(done));
}

void MachineLink::WatchSteps(Client& client, std::optional<plc::StepRange> range)
{
    const std::lock_guard lock(m_mutex);
    if (!range && m_stepsClient != &client) {
        return;
    }
    if (m_stepsClient != nullptr && m_stepsClient != &client) {
        m_stepsClient->OnStepsTaken();
    }
    m_stepsClient = range ? &client : nullptr;
    m_steps = range.value_or(plc::StepRange{});
    m_source->WatchSteps(range);
}

void MachineLink::OnReadings(const WatchList& list, const std::vector<PlacedReading>& readings)
{
    const std::lock_guard lock(m_mutex);
    const bool someWereDue = std::exchange(m_someAreDue, false);
    m_readingCount += readings.size();
    for (const PlacedReading& placed : readings) {
        Slot* const slot =
            &list == m_list.get() ? &m_slots[placed.place] : Find(list[placed.place]);
        if (slot == nullptr || !Take(*slot, placed.reading)) {
            continue;
        }
        if (someWereDue) {
            MakeDue(*slot); // and be told below, once
        } else {
            TellAll(*slot);
        }
    }
    if (someWereDue) {
        TellWhoIsDue();
    }
}

/// @return whether it is worth telling.
bool MachineLink::Take(Slot& slot, const Reading& reading) const
{
    const bool isNews = m_tellsEveryReading || !slot.newest ||
                        reading.value != slot.newest->value ||
                        reading.taken - slot.told >= refreshTime;
    slot.newest = reading;
    if (isNews) {
        slot.told = reading.taken;
        slot.refusal.clear();
    }
    return isNews;
}

void MachineLink::TellAll(Slot& slot)
{
    for (Listener& listener : slot.listeners) {
        listener.due = !listener.watcher->OnReading(*slot.newest);
        m_someAreDue = m_someAreDue || listener.due;
    }
}

void MachineLink::MakeDue(Slot& slot)
{
    for (Listener& listener : slot.listeners) {
        listener.due = true;
    }
}

void MachineLink::TellWhoIsDue()
{
    for (Slot& slot : m_slots) {
        for (Listener& listener : slot.listeners) {
            if (listener.due) {
                listener.due = !Tell(*listener.watcher, slot);
                m_someAreDue = m_someAreDue || listener.due;
            }
        }
    }
}

/// @return whether the watcher knows all that is known.
bool MachineLink::Tell(Watcher& watcher, const Slot& slot)
{
    if (slot.newest) {
        return watcher.OnReading(*slot.newest);
    }
    if (!slot.refusal.empty()) {
        watcher.OnUnreadable(slot.refusal);
    }
    return true;
}

void MachineLink::OnUnreadable(const plc::Operand& operand, const std::string& reason)
{
    const std::lock_guard lock(m_mutex);
    if (Slot* slot = Find(operand)) {
        slot->newest.reset();
        slot->refusal = reason;
        MakeDue(*slot);
        TellWhoIsDue();
    }
}

void MachineLink::OnState(const LinkState& state)
{
    const std::lock_guard lock(m_mutex);
    m_state = state;
    for (Client* client : m_clients) {
        client->OnState(state);
    }
}

bool MachineLink::OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states)
{
    const std::lock_guard lock(m_mutex);
    // What was under way when other steps were asked for is wanted by nobody any more.
    const bool isWanted =
        m_stepsClient != nullptr && range.first == m_steps.first && range.last == m_steps.last;
    return !isWanted || m_stepsClient->OnSteps(range, states);
}

} // namespace plclink
