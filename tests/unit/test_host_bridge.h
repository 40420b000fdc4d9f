#pragma once

#include "bridge.h"
#include "cycle_source.h"
#include "test_host_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The bridge between a PLC and a debugger that both stand still until the test lets them act.

namespace plchost {

constexpr std::chrono::milliseconds cycleTime{10};

/// A program whose states the test sets.
class ScriptedProgram : public plc::CyclicProgram
{
public:
    std::optional<plc::StopReason> RunCycle(plc::Image&, std::chrono::milliseconds) override
    {
        return std::nullopt;
    }

    bool Watch(std::optional<plc::StepRange> range) override
    {
        watched = range;
        ++watches;
        return true;
    }

    const std::vector<plc::StepState>& WatchedStates() const override { return states; }

    std::optional<plc::StepRange> watched;
    int watches = 0;
    std::vector<plc::StepState> states;
};

/// A bridge between a recording sink and an image, with a clock of its own.
struct BridgeTest : testing::Test
{
    RecordingSink sink;
    std::vector<std::string> log;
    std::unique_ptr<plclink::CycleSource> made = std::make_unique<plclink::CycleSource>();
    plclink::CycleSource& source = *made;
    plclink::MachineLink link{std::move(made)};
    std::vector<std::string> warnings;
    Bridge bridge{
        sink,
        link,
        {[this](const std::string& message) { log.push_back(message); },
         [this](const std::string& message) { warnings.push_back(message); }}};
    plc::Image image;
    ScriptedProgram program;
    std::uint64_t cycle = 0;
    plclink::Clock::time_point now;

    void SetUp() override { link.Start(); }

    void Cycle(std::chrono::milliseconds elapsed = cycleTime)
    {
        now += elapsed;
        source.AfterCycle(image, program, ++cycle, now);
    }

    void StandStill(std::chrono::milliseconds elapsed = cycleTime)
    {
        now += elapsed;
        source.AfterCycle(image, program, cycle, now);
    }

    void Watch(std::uint16_t key, const std::string& operand)
    {
        bridge.Request(PlcMakeReadRequest(key, operand.c_str()));
        bridge.Request(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
    }

    void Set(const char* operand, std::uint32_t value)
    {
        image.Write(plc::Image::CellOf(operand), value);
    }

    std::uint32_t Get(const char* operand) const { return image.Read(plc::Image::CellOf(operand)); }

    /// The values answered since the last call, as "key=value".
    std::vector<std::string> Values()
    {
        std::vector<std::string> values;
        for (const RecordedAnswer& answer : sink.Take()) {
            EXPECT_EQ(answer.kind, AnswerKind::ReadVar);
            values.push_back(
                std::to_string(answer.record.key) + '=' +
                std::to_string(PlcAnsweredValue(&answer.record)));
        }
        return values;
    }
};

} // namespace plchost
