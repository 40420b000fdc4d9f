#include "received_values.h"

#include <tuple>

namespace plcremote {

bool ReceivedValues::Less::operator()(const plc::Operand& a, const plc::Operand& b) const
{
    const auto rank = [](const plc::Operand& operand) {
        return std::tie(operand.area, operand.width, operand.block, operand.address, operand.bit);
    };
    return rank(a) < rank(b);
}

bool ReceivedValues::Take(const ValuesMessage& message, Time came)
{
    if (message.session != m_session) {
        if (m_heard && came - *m_heard < silence) {
            return false;
        }
        m_session = message.session;
        m_lateness = {};
        Restart();
    }
    const Sequence::Step step = m_sequence.Take(message.sequence);
    if (step == Sequence::Step::Old) {
        return false;
    }
    m_heard = came;
    m_running = message.running;
    m_late = m_lateness.Take(message.running, came);
    if (message.isWhole) {
        m_known.clear();
    } else if (step != Sequence::Step::Next) {
        for (auto& [operand, known] : m_known) {
            known.isSure = false;
        }
    }
    for (const RemoteValue& value : message.values) {
        m_known[value.operand] = {value.value, value.refusal, {}, true};
    }
    for (auto& [operand, known] : m_known) {
        known.age = {};
    }
    for (const RemoteAge& old : message.ages) {
        if (const auto known = m_known.find(old.operand); known != m_known.end()) {
            known->second.age = old.age;
        }
    }
    return true;
}

void ReceivedValues::Restart()
{
    m_sequence.Restart();
    m_heard.reset();
    m_known.clear();
}

std::vector<plclink::PlacedReading> ReceivedValues::Readings(const plclink::WatchList& list) const
{
    std::vector<plclink::PlacedReading> readings;
    for (std::size_t place = 0; place < list.size(); ++place) {
        const auto known = m_known.find(list[place]);
        if (known != m_known.end() && known->second.isSure && known->second.value) {
            readings.push_back(
                {place, {*known->second.value, *m_heard - known->second.age - m_late}});
        }
    }
    return readings;
}

std::vector<std::pair<plc::Operand, std::string>>
ReceivedValues::NewRefusals(const plclink::WatchList& list)
{
    std::map<plc::Operand, std::string, Less> refused;
    std::vector<std::pair<plc::Operand, std::string>> news;
    for (const plc::Operand& operand : list) {
        const auto known = m_known.find(operand);
        if (known == m_known.end() || known->second.refusal.empty()) {
            continue;
        }
        refused[operand] = known->second.refusal;
        const auto told = m_refused.find(operand);
        if (told == m_refused.end() || told->second != known->second.refusal) {
            news.emplace_back(operand, known->second.refusal);
        }
    }
    m_refused.swap(refused);
    return news;
}

milliseconds ReceivedValues::RunningTime(Time now) const
{
    return m_running + std::chrono::duration_cast<milliseconds>(now - *m_heard);
}

} // namespace plcremote
