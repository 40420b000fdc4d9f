#pragma once

#include "connection.h"
#include "source.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// A machine far away, as a machine.

namespace plcremote {

class FarMachine;

class MqttSource : public plclink::Source
{
public:
    /// @param log takes what has to be said beside states and values. [any-thread]
    MqttSource(
        plclink::MqttAddress address,
        plclink::MqttAccess access,
        std::function<void(const std::string& sentence)> log);
    ~MqttSource() override;
    MqttSource(const MqttSource&) = delete;
    MqttSource(MqttSource&&) = delete;
    MqttSource& operator=(const MqttSource&) = delete;
    MqttSource& operator=(MqttSource&&) = delete;

    void Start(plclink::SourceEvents& events) override;
    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const plclink::WatchList> list) override;
    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done) override;
    void WatchSteps(std::optional<plc::StepRange> range) override;
    std::chrono::milliseconds TurnTime() const override;
    plclink::MessageLosses Losses() const override;

    /// What the machine has published as its program debug file so far; empty: nothing.
    /// [any-thread]
    std::string Listing() const;

    /// Whether the machine's state has come, its listing when it has one, and what it tells of
    /// itself unless it has ended. [any-thread]
    bool IsIntroduced() const;

    /// What the machine tells of itself and to other viewers, as far as it can be read, by its
    /// newest whole message. [any-thread]
    std::vector<plc::Operand> Told() const;

private:
    const std::unique_ptr<FarMachine> m_machine;
};

} // namespace plcremote
