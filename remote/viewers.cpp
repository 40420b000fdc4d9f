#include "viewers.h"

#include "messages.h"

#include <algorithm>
#include <string>
#include <utility>

namespace plcremote {

base::Result<void>
Viewers::Watch(const Viewer& viewer, std::vector<plc::Operand> operands, Time now)
{
    m_leases.erase(viewer);
    if (operands.empty()) {
        return {};
    }
    if (Count() >= mostViewers) {
        return base::Failure{
            "the machine is watched by " + std::to_string(mostViewers) +
            " windows already, and serves no more"};
    }
    Lease& taken = m_leases[viewer];
    taken = {std::move(operands), now + lease};
    if (Operands().size() > mostOperands) {
        m_leases.erase(viewer);
        return base::Failure{
            "with these the machine would have to tell more than " + std::to_string(mostOperands) +
            " operands"};
    }
    return {};
}

void Viewers::WatchSteps(const Viewer& viewer, std::optional<plc::StepRange> range, Time now)
{
    if (range) {
        m_stepsViewer = viewer;
        m_steps = *range;
        m_stepsUntil = now + lease;
    } else if (m_stepsViewer == viewer) {
        m_stepsViewer.reset();
    }
}

bool Viewers::Expire(Time now)
{
    bool someWere = false;
    for (auto entry = m_leases.begin(); entry != m_leases.end();) {
        if (entry->second.until <= now) {
            entry = m_leases.erase(entry);
            someWere = true;
        } else {
            ++entry;
        }
    }
    if (m_stepsViewer && m_stepsUntil <= now) {
        m_stepsViewer.reset();
        someWere = true;
    }
    return someWere;
}

void Viewers::Clear()
{
    m_leases.clear();
    m_stepsViewer.reset();
}

std::size_t Viewers::Count() const
{
    return m_leases.size();
}

std::vector<plc::Operand> Viewers::Operands() const
{
    std::map<std::string, plc::Operand> operands;
    const auto add = [&operands](const std::vector<plc::Operand>& some) {
        for (const plc::Operand& operand : some) {
            operands.emplace(plc::OperandName(operand), operand);
        }
    };
    add(m_always);
    for (const auto& entry : m_leases) {
        add(entry.second.operands);
    }
    std::vector<plc::Operand> each;
    std::transform(operands.begin(), operands.end(), std::back_inserter(each), [](const auto& one) {
        return one.second;
    });
    return each;
}

std::optional<Viewer> Viewers::StepsViewer() const
{
    return m_stepsViewer;
}

std::optional<plc::StepRange> Viewers::Steps() const
{
    return m_stepsViewer ? std::optional(m_steps) : std::nullopt;
}

} // namespace plcremote
