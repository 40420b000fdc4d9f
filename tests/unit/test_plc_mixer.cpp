#include "mixer/mixer.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>

// The batch mixer over several batches.

namespace {

using namespace std::chrono_literals;

enum Step : std::uint32_t
{
    ready = 1,
    weighA = 2,
    weighB = 4,
    heat = 6,
    stir = 7,
    drain = 8
};

class MixerTest : public testing::Test
{
protected:
    bool AwaitStep(Step step)
    {
        return machine.RunUntil(5min, [this, step] { return machine.Read("MW30") == step; });
    }

    /// Lets one batch be made, up to the beginning of its draining.
    bool MakeBatch()
    {
        machine.Press("E0.0");
        return AwaitStep(drain);
    }

    std::uint32_t Batches() const { return machine.Read("DB25.DBW0"); }

private:
    std::unique_ptr<samples::Mixer> m_owned = std::make_unique<samples::Mixer>();

protected:
    const samples::Mixer& mixer = *m_owned;
    plctest::Machine machine{"mixer/mixer.il", std::move(m_owned)};
};

TEST_F(MixerTest, WaitsForItsStartButton)
{
    machine.Run(1min);

    EXPECT_EQ(machine.Read("MW30"), ready);
    EXPECT_EQ(machine.Read("AB0"), 0U);
}

TEST_F(MixerTest, MakesABatchByItsRecipe)
{
    ASSERT_TRUE(MakeBatch());

    EXPECT_NEAR(mixer.MaterialA(), 20, 1);
    EXPECT_NEAR(mixer.MaterialB(), 10, 1);
    EXPECT_NEAR(mixer.Temperature(), 40, 3);
    EXPECT_GT(mixer.Mixed(), 0.95);
    EXPECT_EQ(machine.Read("DB25.DBD12"), machine.Read("EW2"));

    ASSERT_TRUE(AwaitStep(ready));
    EXPECT_EQ(Batches(), 1U);
    EXPECT_LT(mixer.MaterialA() + mixer.MaterialB(), 0.05);
    EXPECT_TRUE(machine.IsOn("A1.3")) << "batch done";
    machine.Run(10s);
    EXPECT_FALSE(machine.IsOn("A1.3"));
    EXPECT_FALSE(machine.IsOn("A1.0"));
}

TEST_F(MixerTest, LearnsWhatFollowsAfterAValveHasClosed)
{
    double first = 0;
    double last = 0;
    for (int batch = 0; batch < 5; ++batch) {
        ASSERT_TRUE(MakeBatch());
        last = std::abs(mixer.MaterialA() - 20) + std::abs(mixer.MaterialB() - 10);
        first = batch == 0 ? last : first;
        ASSERT_TRUE(AwaitStep(ready));
    }

    EXPECT_GT(first, 0.8);
    EXPECT_LT(last, 0.35);
}

TEST_F(MixerTest, RunsBatchAfterBatchByItself)
{
    machine.Write("E0.5", 1);
    machine.Press("E0.0");

    machine.Run(10min);

    EXPECT_GE(Batches(), 7U);
    EXPECT_EQ(machine.Read("DB25.DBW2"), 0U) << "alarms";
}

TEST_F(MixerTest, HeatsOnlyWithTheStirrerAndNeverDrainsWhileItFills)
{
    machine.Write("E0.5", 1);
    machine.Press("E0.0");
    double hottest = 0;

    const bool failed = machine.RunUntil(10min, [&] {
        hottest = std::max(hottest, mixer.Temperature());
        const bool fills = machine.IsOn("A0.0") || machine.IsOn("A0.1");
        return (machine.IsOn("A0.3") && !machine.IsOn("A0.2")) || (fills && machine.IsOn("A0.4")) ||
               (machine.IsOn("A0.0") && machine.IsOn("A0.1"));
    });

    EXPECT_FALSE(failed) << "step " << machine.Read("MW30");
    EXPECT_LT(hottest, 45);
}

TEST_F(MixerTest, TakesAnotherRecipeFromTheNextBatchOn)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(weighB));
    machine.Write("DB20.DBW20", 3);
    ASSERT_TRUE(AwaitStep(drain));
    EXPECT_NEAR(mixer.MaterialA(), 20, 1) << "the one in work is not changed";
    ASSERT_TRUE(AwaitStep(ready));

    ASSERT_TRUE(MakeBatch());

    EXPECT_EQ(machine.Read("DB20.DBW22"), 3U);
    EXPECT_NEAR(mixer.MaterialA(), 30, 1);
    EXPECT_NEAR(mixer.MaterialB(), 5, 1);
    EXPECT_NEAR(mixer.Temperature(), 30, 3);
}

TEST_F(MixerTest, ARecipeThatDoesNotExistIsTheFirst)
{
    machine.Write("DB20.DBW20", 7);
    machine.Cycle();

    EXPECT_EQ(machine.Read("DB20.DBW22"), 1U);
    EXPECT_EQ(machine.Read("DB20.DBW0"), 200U);
}

TEST_F(MixerTest, HoldShutsTheValvesAndGoesOnWhereItWas)
{
    machine.Press("E0.0");
    machine.Run(3s);
    ASSERT_EQ(machine.Read("MW30"), weighA);

    machine.Write("E0.1", 0);
    machine.Run(2s);
    const double held = mixer.MaterialA();
    machine.Run(30s);
    const double later = mixer.MaterialA();
    machine.Write("E0.1", 1);
    ASSERT_TRUE(AwaitStep(drain));

    EXPECT_EQ(held, later);
    EXPECT_NEAR(mixer.MaterialA(), 20, 1.5);
}

TEST_F(MixerTest, TheStirringTimeDoesNotCountWhileItIsHeld)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(stir));

    machine.Write("E0.1", 0);
    machine.Run(1min);
    const auto step = machine.Read("MW30");
    machine.Write("E0.1", 1);
    int cycles = 0;
    machine.RunUntil(1min, [&] {
        ++cycles;
        return machine.Read("MW30") == drain;
    });

    EXPECT_EQ(step, stir);
    EXPECT_NEAR(cycles, 1500, 60) << "fifteen seconds";
}

TEST_F(MixerTest, AnEmptySupplyIsFoundByTheTimeOfWeighing)
{
    machine.Write("E0.6", 0);
    machine.Press("E0.0");

    ASSERT_TRUE(machine.RunUntil(40s, [this] { return machine.IsOn("M2.3"); }));
    EXPECT_TRUE(machine.IsOn("A1.2")) << "horn";
    EXPECT_FALSE(machine.IsOn("A0.0"));
    machine.Write("E0.6", 1);
    machine.Press("E0.3");

    EXPECT_TRUE(AwaitStep(drain));
    EXPECT_EQ(machine.Read("DB25.DBW2"), 1U) << "alarms";
}

TEST_F(MixerTest, AlarmsStandUntilTheirCauseHasGoneAndSomebodyHasSeenThem)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(stir));

    machine.Write("E0.4", 0);
    machine.Run(100ms);
    const bool stopped = !machine.IsOn("A0.2") && !machine.IsOn("A0.3");
    machine.Press("E0.3");
    const bool standsWithItsCause = machine.IsOn("M2.2");
    machine.Write("E0.4", 1);
    machine.Run(1s);
    const bool standsUnseen = machine.IsOn("M2.2");
    machine.Press("E0.3");

    EXPECT_TRUE(stopped);
    EXPECT_TRUE(standsWithItsCause);
    EXPECT_TRUE(standsUnseen);
    EXPECT_FALSE(machine.IsOn("M2.0"));
    EXPECT_TRUE(machine.IsOn("A0.2"));
}

TEST_F(MixerTest, TheEmergencyStopSwitchesEverythingOff)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(heat));
    machine.Run(1s);

    machine.Write("E0.2", 0);
    machine.Cycle();

    EXPECT_EQ(machine.Read("AB0"), 0U);
}

TEST_F(MixerTest, FarTooHotIsAnAlarm)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(heat));
    machine.Run(10s);
    ASSERT_TRUE(machine.IsOn("A0.3"));

    machine.Write("DB20.DBW4", 100);
    machine.Cycle();

    EXPECT_TRUE(machine.IsOn("M2.4"));
    EXPECT_FALSE(machine.IsOn("A0.3"));
}

TEST_F(MixerTest, StartsOnlyWithAnEmptyVessel)
{
    machine.Press("E0.0");
    ASSERT_TRUE(AwaitStep(weighB));
    machine.Write("MW30", ready);
    machine.Write("M1.0", 0);

    machine.Press("E0.0");

    EXPECT_EQ(machine.Read("MW30"), ready);
}

} // namespace
