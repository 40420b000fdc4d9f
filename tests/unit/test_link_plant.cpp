#include "assembler.h"
#include "plant.h"
#include "projectfile.h"

#include <gtest/gtest.h>

#include <condition_variable>

namespace plclink {
namespace {

using namespace std::chrono_literals;

/// Tells the test when cycles have passed.
class Cycles
{
public:
    void Note()
    {
        const std::lock_guard lock(m_mutex);
        m_changed.notify_all();
    }

    /// Waits until a condition holds after some cycle.
    /// @return false when it does not come to hold for very long.
    template <typename Condition> bool Until(Condition condition)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 60s, condition);
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

// A bit of a vector must not outlive it.
bool SwitchIsOn(const Plant& plant, std::size_t place)
{
    const PanelState panel = plant.Panel();
    return panel.switches.at(place);
}

bool LampIsOn(const Plant& plant, std::size_t place)
{
    const PanelState panel = plant.Panel();
    return panel.lamps.at(place);
}

struct PlantTest : testing::Test
{
    plc::Controller::AfterCycle Hook()
    {
        return [this](plc::Image&, plc::CyclicProgram&, std::uint64_t) { cycles.Note(); };
    }

    static plc::Program ProgramOf(plc::Assembly assembly)
    {
        EXPECT_TRUE(assembly.program);
        return std::move(assembly.program).value_or(plc::Program{});
    }

    std::unique_ptr<Plant> Bare(const char* source)
    {
        return std::make_unique<Plant>(
            ProgramOf(plc::Assemble(source, "test.il")), nullptr, Hook(), 1ms);
    }

    std::unique_ptr<Plant> Bottling()
    {
        return std::make_unique<Plant>(
            ProgramOf(plc::AssembleFile(ProjectFile("samples/bottling/bottling.il"))),
            std::make_unique<samples::BottlingLine>(),
            Hook(),
            1ms);
    }

    Cycles cycles;
};

TEST_F(PlantTest, ABareProgramShowsItsFirstInputsAndOutputs)
{
    const auto plant = Bare("OB1: TITLE Test\n U E0.3\n = A0.5\n BE\n");
    plant->Start();

    plant->SetSwitch(3, true);

    EXPECT_TRUE(cycles.Until([&] { return LampIsOn(*plant, 5); }));
    EXPECT_TRUE(SwitchIsOn(*plant, 3));
    EXPECT_FALSE(LampIsOn(*plant, 4));
    EXPECT_FALSE(plant->Line());
}

TEST_F(PlantTest, StopTurnsTheLampsOff)
{
    const auto plant = Bare("OB1: TITLE Test\n UN E0.3\n = A0.5\n BE\n");
    plant->Start();
    ASSERT_TRUE(cycles.Until([&] { return LampIsOn(*plant, 5); }));

    plant->Stop();

    EXPECT_TRUE(cycles.Until([&] { return !LampIsOn(*plant, 5); }));
    EXPECT_FALSE(plant->Status().running);
}

TEST_F(PlantTest, TheBottlingLineHasAPictureAndItsSwitchesAtPowerOn)
{
    const auto plant = Bottling();

    EXPECT_TRUE(cycles.Until([&] { return SwitchIsOn(*plant, 2); }));
    ASSERT_TRUE(plant->Line());
    EXPECT_EQ(plant->Switches().size(), samples::bottlingSwitches.size());
    EXPECT_EQ(plant->Lamps().size(), samples::bottlingLamps.size());
}

TEST_F(PlantTest, TheBottlingLineStartsByItsFirstSwitch)
{
    const auto plant = Bottling();
    plant->Start();

    plant->SetSwitch(0, true);

    EXPECT_TRUE(cycles.Until([&] { return plant->Line()->motorOn; }));
}

} // namespace
} // namespace plclink
