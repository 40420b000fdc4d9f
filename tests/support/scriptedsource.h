#pragma once

#include "source.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A machine that does what the test says, on the test's thread.
class ScriptedSource : public plclink::Source
{
public:
    explicit ScriptedSource(bool tellsEvery = false) : m_tellsEvery(tellsEvery) {}

    void Start(plclink::SourceEvents& theEvents) override { events = &theEvents; }

    base::Result<void> Check(const plc::Operand& operand) const override
    {
        if (operand.area == plc::Area::Output) {
            return base::Failure{"no outputs here"};
        }
        return {};
    }

    void Watch(std::shared_ptr<const plclink::WatchList> theList) override
    {
        list = std::move(theList);
    }

    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done) override
    {
        written.push_back(plc::OperandName(operand) + '=' + std::to_string(value));
        if (endsWrites) {
            done({});
        } else {
            underWay.push_back(std::move(done));
        }
    }

    void WatchSteps(std::optional<plc::StepRange> range) override { steps = range; }

    bool TellsEveryReading() const override { return m_tellsEvery; }

    plclink::SourceEvents* events = nullptr;
    std::shared_ptr<const plclink::WatchList> list;
    bool endsWrites = true; ///< At once.
    std::vector<std::string> written;
    std::vector<plclink::WriteDone> underWay; ///< Of writes that have not ended.
    std::optional<plc::StepRange> steps;

private:
    const bool m_tellsEvery;
};
