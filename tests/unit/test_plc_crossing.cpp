#include "crossing/crossing.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

// The traffic crossing over simulated minutes.

namespace {

using namespace std::chrono_literals;

/// Lamps of one direction, as letters: "r", "ry", "g", "y".
std::string Lamps(const plctest::Machine& machine, const std::string& byte)
{
    std::string lamps;
    for (const char* lamp : {"r", "y", "g"}) {
        const std::size_t bit = std::string("ryg").find(lamp);
        if (machine.IsOn(byte + "." + std::to_string(bit))) {
            lamps += lamp;
        }
    }
    return lamps;
}

/// What a light showed, each picture once.
class Pictures
{
public:
    void Add(const std::string& lamps)
    {
        if (m_seen.empty() || m_seen.back() != lamps) {
            m_seen.push_back(lamps);
        }
    }

    const std::vector<std::string>& Seen() const { return m_seen; }

private:
    std::vector<std::string> m_seen;
};

class CrossingTest : public testing::Test
{
protected:
    const samples::Crossing& Traffic() const { return *m_crossing; }

    /// Lets it work until the main road is green and nobody else wants to go.
    bool AwaitMainGreen()
    {
        return machine.RunUntil(
            2min, [this] { return machine.IsOn("A0.2") && !machine.IsOn("M9.2"); });
    }

private:
    std::unique_ptr<samples::Crossing> m_owned = std::make_unique<samples::Crossing>();
    const samples::Crossing* m_crossing = m_owned.get();

protected:
    plctest::Machine machine{"crossing/crossing.il", std::move(m_owned)};
};

TEST_F(CrossingTest, NeverLetsTwoDirectionsGo)
{
    const bool stopped = machine.RunUntil(5min, [this] {
        const bool mainMayGo = machine.IsOn("A0.1") || machine.IsOn("A0.2");
        const bool sideMayGo = machine.IsOn("A1.1") || machine.IsOn("A1.2");
        const bool walkMayGo = machine.IsOn("A2.1");
        return static_cast<int>(mainMayGo) + static_cast<int>(sideMayGo) +
                   static_cast<int>(walkMayGo) >
               1;
    });

    EXPECT_FALSE(stopped) << "step " << machine.Read("MW0");
    EXPECT_EQ(machine.Read("MW10"), 0U) << "conflicts that the program itself has seen";
}

TEST_F(CrossingTest, EverybodyGetsThroughInTime)
{
    machine.Run(10min);

    EXPECT_GT(Traffic().MainRoad().passed, 80U);
    EXPECT_GT(Traffic().SideRoad().passed, 25U);
    EXPECT_GT(Traffic().Pedestrians().passed, 8U);
    EXPECT_LT(Traffic().MainRoad().longestWait, 60);
    EXPECT_LT(Traffic().SideRoad().longestWait, 60);
    EXPECT_LT(Traffic().Pedestrians().longestWait, 60);
}

TEST_F(CrossingTest, EveryLightGoesThroughItsPicturesInOrder)
{
    Pictures mainRoad;
    Pictures sideRoad;
    Pictures walk;
    machine.RunUntil(5min, [&] {
        mainRoad.Add(Lamps(machine, "A0"));
        sideRoad.Add(Lamps(machine, "A1"));
        walk.Add(machine.IsOn("A2.1") ? "g" : (machine.IsOn("A2.0") ? "r" : ""));
        return false;
    });

    const std::vector<std::string> road{"r", "ry", "g", "y"};
    for (const Pictures* light : {&mainRoad, &sideRoad}) {
        ASSERT_GT(light->Seen().size(), 12U);
        for (std::size_t i = 0; i < light->Seen().size(); ++i) {
            EXPECT_EQ(light->Seen()[i], road[i % 4]) << i;
        }
    }
    ASSERT_GT(walk.Seen().size(), 3U);
    for (std::size_t i = 0; i < walk.Seen().size(); ++i) {
        EXPECT_EQ(walk.Seen()[i], i % 2 == 0 ? "r" : "g") << i;
    }
}

TEST_F(CrossingTest, TheRequestLampAnswersTheButtonUntilTheWalkLight)
{
    ASSERT_TRUE(AwaitMainGreen());
    ASSERT_FALSE(machine.IsOn("A2.2"));

    ASSERT_TRUE(machine.RunUntil(10min, [this] { return machine.IsOn("E0.0"); }));
    const bool seen = machine.IsOn("A2.2");
    const bool green = machine.RunUntil(1min, [this] { return machine.IsOn("A2.1"); });
    machine.Run(50ms);

    EXPECT_TRUE(seen);
    EXPECT_TRUE(green);
    EXPECT_FALSE(machine.IsOn("A2.2"));
}

TEST_F(CrossingTest, TheTimesOfTheDataBlockCount)
{
    const auto greenCycles = [this] {
        EXPECT_TRUE(machine.RunUntil(5min, [this] { return !machine.IsOn("A1.2"); }));
        EXPECT_TRUE(machine.RunUntil(5min, [this] { return machine.IsOn("A1.2"); }));
        int cycles = 0;
        machine.RunUntil(1min, [&] {
            ++cycles;
            return !machine.IsOn("A1.2");
        });
        return cycles;
    };

    const int before = greenCycles();
    machine.Write("DB10.DBW8", 300);

    EXPECT_NEAR(before, 800, 5);
    EXPECT_NEAR(greenCycles(), 300, 5);
}

TEST_F(CrossingTest, AtNightTheYellowLightsBlink)
{
    ASSERT_TRUE(AwaitMainGreen());
    machine.Write("E0.2", 1);
    int changes = 0;
    bool before = machine.IsOn("A0.1");

    machine.RunUntil(2min, [&] {
        EXPECT_EQ(machine.IsOn("A0.1"), machine.IsOn("A1.1"));
        EXPECT_EQ(machine.Read("AB0") & ~2U, 0U);
        EXPECT_EQ(machine.Read("AB2") & 3U, 0U);
        changes += machine.IsOn("A0.1") != before ? 1 : 0;
        before = machine.IsOn("A0.1");
        return false;
    });
    machine.Write("E0.2", 0);
    machine.Cycle();

    EXPECT_NEAR(changes, 240, 10);
    EXPECT_EQ(Lamps(machine, "A0"), "r") << "after the night it begins with all red";
    EXPECT_EQ(Lamps(machine, "A1"), "r");
}

TEST_F(CrossingTest, InspectionHoldsEverythingRed)
{
    machine.Run(1min);

    machine.Write("E0.3", 1);
    machine.Cycle();
    const bool left = machine.RunUntil(1min, [this] {
        return Lamps(machine, "A0") != "r" || Lamps(machine, "A1") != "r" || machine.IsOn("A2.1");
    });
    machine.Write("E0.3", 0);

    EXPECT_FALSE(left);
    EXPECT_TRUE(machine.RunUntil(1min, [this] { return machine.IsOn("A0.2"); }));
}

TEST_F(CrossingTest, AStepThatDoesNotExistEndsInAllRed)
{
    machine.Run(1min);

    machine.Write("MW0", 77);
    machine.Cycle();

    EXPECT_EQ(Lamps(machine, "A0"), "r");
    EXPECT_EQ(Lamps(machine, "A1"), "r");
    EXPECT_TRUE(machine.RunUntil(1min, [this] { return machine.IsOn("A0.2"); }));
}

} // namespace
