#include "assembler.h"
#include "crossing/crossing.h"
#include "machine_link.h"
#include "projectfile.h"
#include "soft_plc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <string>
#include <vector>

namespace plclink {
namespace {

using namespace std::chrono_literals;

plc::Operand OperandOf(std::string_view name)
{
    return plc::ParseOperand(name).value();
}

plc::Program SampleProgram(std::string_view name)
{
    const std::string sample(name);
    return plc::AssembleFile(ProjectFile("samples/" + sample + '/' + sample + ".il"))
        .program.value();
}

/// Keeps what it hears until the test looks.
class Ear : public Watcher
{
public:
    bool OnReading(const Reading& reading) override
    {
        const std::lock_guard lock(m_mutex);
        m_values.push_back(reading.value);
        m_heard.notify_all();
        return true;
    }

    void OnUnreadable(const std::string&) override {}

    /// Waits until these values were heard one after the other, perhaps with others between them.
    testing::AssertionResult Hears(const std::vector<std::uint32_t>& wanted)
    {
        std::unique_lock lock(m_mutex);
        const auto heardAll = [&] {
            auto next = wanted.begin();
            for (const std::uint32_t value : m_values) {
                if (next != wanted.end() && value == *next) {
                    ++next;
                }
            }
            return next == wanted.end();
        };
        if (m_heard.wait_for(lock, 60s, heardAll)) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << m_values.size() << " other values";
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_heard;
    std::vector<std::uint32_t> m_values;
};

TEST(SoftPlc, PressesTheStartButtonOfTheLineAndLetsItGo)
{
    Ear button;
    MachineLink link(std::make_unique<SoftPlc>(
        SampleProgram("bottling"), samples::FindSampleMachine("bottling"), 1ms));
    link.Watch(button, OperandOf("E0.0"));

    link.Start();

    EXPECT_TRUE(button.Hears({1, 0}));
}

TEST(SoftPlc, LetsAProgramAloneBe)
{
    Ear output;
    MachineLink link(std::make_unique<SoftPlc>(
        plc::Assemble("OB1: TITLE Test\n UN E0.0\n = A0.0\n BE\n", "test.il").program.value(),
        nullptr,
        1ms));
    link.Watch(output, OperandOf("A0.0"));

    link.Start();

    EXPECT_TRUE(output.Hears({1}));
}

struct SampleMachinesTest : testing::TestWithParam<std::pair<const char*, const char*>>
{
};

TEST_P(SampleMachinesTest, RunByTheirNameWithTheirProcess)
{
    const auto& [name, operand] = GetParam();
    Ear ear;
    MachineLink link(
        std::make_unique<SoftPlc>(SampleProgram(name), samples::FindSampleMachine(name), 1ms));
    link.Watch(ear, OperandOf(operand));

    link.Start();

    EXPECT_TRUE(ear.Hears({1}));
}

// Of each machine an input that only its process switches on.
INSTANTIATE_TEST_SUITE_P(
    SamplesWithSwitches,
    SampleMachinesTest,
    testing::Values(
        std::pair("bottling", "E0.2"),
        std::pair("instructions", "E0.0"),
        std::pair("lift", "E2.4"),
        std::pair("mixer", "E0.1")));

TEST(SampleMachines, HaveTheTrafficOfTheCrossing)
{
    const auto process = samples::FindSampleMachine("crossing")->makeProcess();

    EXPECT_NE(dynamic_cast<samples::Crossing*>(process.get()), nullptr);
}

TEST(SampleMachines, KnowNoOtherName)
{
    EXPECT_EQ(samples::FindSampleMachine("lathe"), nullptr);
    EXPECT_EQ(samples::FindSampleMachine(""), nullptr);
}

} // namespace
} // namespace plclink
