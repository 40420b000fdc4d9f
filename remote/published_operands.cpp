#include "published_operands.h"

#include <iterator>
#include <set>
#include <utility>

namespace plcremote {

/// Keeps an operand being read; what comes is looked up in the link.
class PublishedOperands::Watching : public plclink::Watcher
{
    bool OnReading(const plclink::Reading&) override { return true; }

    void OnUnreadable(const std::string&) override {}
};

PublishedOperands::PublishedOperands(plclink::MachineLink& link) : m_link(link) {}

PublishedOperands::~PublishedOperands()
{
    LetGo();
}

bool PublishedOperands::Watch(const plc::Operand& operand)
{
    const std::string name = plc::OperandName(operand);
    if (m_watchings.count(name) != 0 || m_refused.count(name) != 0) {
        return false;
    }
    if (const auto known = m_link.Check(operand); !known) {
        m_refused.emplace(name, plclink::WatchedOperand{operand, {}, known.Message()});
        return true;
    }
    auto watching = std::make_unique<Watching>();
    m_link.Watch(*watching, operand);
    m_watchings.emplace(name, std::move(watching));
    return true;
}

bool PublishedOperands::Serve(const std::vector<plc::Operand>& wanted)
{
    std::set<std::string> names;
    bool isAnyNew = false;
    for (const plc::Operand& operand : wanted) {
        names.insert(plc::OperandName(operand));
        isAnyNew = Watch(operand) || isAnyNew;
    }
    for (auto entry = m_refused.begin(); entry != m_refused.end();) {
        entry = names.count(entry->first) == 0 ? m_refused.erase(entry) : std::next(entry);
    }
    for (auto entry = m_watchings.begin(); entry != m_watchings.end();) {
        if (names.count(entry->first) == 0) {
            m_link.Unwatch(*entry->second);
            entry = m_watchings.erase(entry);
        } else {
            ++entry;
        }
    }
    return isAnyNew;
}

void PublishedOperands::LetGo()
{
    Serve({});
}

std::vector<plclink::WatchedOperand> PublishedOperands::Known() const
{
    std::vector<plclink::WatchedOperand> known;
    for (plclink::WatchedOperand& watched : m_link.Watched()) {
        if (m_watchings.count(plc::OperandName(watched.operand)) != 0) {
            known.push_back(std::move(watched));
        }
    }
    for (const auto& entry : m_refused) {
        known.push_back(entry.second);
    }
    return known;
}

} // namespace plcremote
