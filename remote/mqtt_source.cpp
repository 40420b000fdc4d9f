#include "mqtt_source.h"

#include "far_machine.h"

#include <utility>

namespace plcremote {

MqttSource::MqttSource(
    plclink::MqttAddress address,
    plclink::MqttAccess access,
    std::function<void(const std::string& sentence)> log)
    : m_machine(std::make_unique<FarMachine>(std::move(address), std::move(access), std::move(log)))
{
}

MqttSource::~MqttSource() = default;

void MqttSource::Start(plclink::SourceEvents& events)
{
    m_machine->Start(events);
}

base::Result<void> MqttSource::Check(const plc::Operand& operand) const
{
    if (!plc::Exists(operand)) {
        return base::Failure{"no PLC has an operand \"" + plc::OperandName(operand) + '"'};
    }
    return {};
}

void MqttSource::Watch(std::shared_ptr<const plclink::WatchList> list)
{
    m_machine->Watch(std::move(list));
}

void MqttSource::Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done)
{
    m_machine->Write(operand, value, std::move(done));
}

void MqttSource::WatchSteps(std::optional<plc::StepRange> range)
{
    m_machine->WatchSteps(range);
}

std::chrono::milliseconds MqttSource::TurnTime() const
{
    return m_machine->TurnTime();
}

std::string MqttSource::Listing() const
{
    return m_machine->Listing();
}

bool MqttSource::IsIntroduced() const
{
    return m_machine->IsIntroduced();
}

std::vector<plc::Operand> MqttSource::Told() const
{
    return m_machine->Told();
}

plclink::MessageLosses MqttSource::Losses() const
{
    return m_machine->Losses();
}

} // namespace plcremote
