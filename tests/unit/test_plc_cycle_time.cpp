#include "bottling/bottling.h"
#include "cycle_time.h"
#include "process.h"
#include "test_plc_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace {

using namespace std::chrono_literals;
using plc::CycleTime;
using std::chrono::milliseconds;
using testing::ElementsAre;

const CycleTime::Clock::time_point begin{};

TEST(CycleTime, IsTheTimeSinceTheCycleBefore)
{
    CycleTime time(begin, 10ms);

    EXPECT_EQ(time.Pass(begin), 0ms);
    EXPECT_EQ(time.Pass(begin + 10ms), 10ms);
    EXPECT_EQ(time.Pass(begin + 25ms), 15ms);
}

TEST(CycleTime, LosesNothingByRounding)
{
    CycleTime time(begin, 1ms);

    milliseconds sum{0};
    for (int cycle = 1; cycle <= 1000; ++cycle) {
        sum += time.Pass(begin + cycle * 1700us);
    }

    EXPECT_EQ(sum, 1700ms);
}

TEST(CycleTime, IsNotMadeUpForAfterAHoldUp)
{
    CycleTime time(begin, 10ms);

    EXPECT_EQ(time.Pass(begin + 1h), 100ms);
    EXPECT_EQ(time.Pass(begin + 1h + 10ms), 10ms);
}

TEST(CycleTime, IsTheWholePeriodHoweverLongThatIs)
{
    for (const milliseconds period : {1ms, 10ms, 100ms, 500ms, 1000ms}) {
        CycleTime time(begin, period);
        for (int cycle = 1; cycle <= 3; ++cycle) {
            EXPECT_EQ(time.Pass(begin + cycle * period), period);
        }
    }
}

TEST(CycleTime, LetsATimerOfOneSecondRunOutInCyclesOfOneSecond)
{
    plctest::Machine machine("U E0.0\nL 100\nSE T1\nU T1\n= A0.0");
    machine.Write("E0.0", 1);
    CycleTime time(begin, 1s);
    machine.Cycle(time.Pass(begin));
    EXPECT_FALSE(machine.IsOn("A0.0"));

    machine.Cycle(time.Pass(begin + 1s));

    EXPECT_TRUE(machine.IsOn("A0.0"));
}

/// A process that notes how it is moved on.
class NotingProcess : public plc::Process
{
public:
    void PowerOn(plc::Image&) override {}

    void Advance(plc::Image&, milliseconds elapsed) override { steps.push_back(elapsed); }

    std::vector<milliseconds> steps;
};

std::vector<milliseconds> StepsOf(milliseconds elapsed)
{
    NotingProcess process;
    plc::Image image;
    plc::MoveOn(process, image, elapsed);
    return process.steps;
}

TEST(MoveOn, TakesACycleOfTheUsualLengthInOneStep)
{
    EXPECT_THAT(StepsOf(0ms), ElementsAre(0ms));
    EXPECT_THAT(StepsOf(10ms), ElementsAre(10ms));
    EXPECT_THAT(StepsOf(11ms), ElementsAre(11ms));
}

TEST(MoveOn, TakesALongCycleInShortSteps)
{
    EXPECT_THAT(StepsOf(50ms), ElementsAre(20ms, 20ms, 10ms));
}

/// How far the belt of the bottling line travels in ten seconds, and how many bottles come.
std::pair<double, std::size_t> TravelInCyclesOf(milliseconds period)
{
    samples::BottlingLine line;
    plc::Image image;
    line.PowerOn(image);
    image.Write(plc::Image::CellOf("A0.0"), 1);
    for (milliseconds now{0}; now < 10s; now += period) {
        plc::MoveOn(line, image, period);
    }
    return {line.View().beltTravel, line.View().bottles.size()};
}

TEST(MoveOn, TheBottlingLineTravelsAsFarInLongCyclesAsInShortOnes)
{
    const auto expected = TravelInCyclesOf(10ms);
    for (const milliseconds period : {100ms, 500ms, 1000ms}) {
        const auto travel = TravelInCyclesOf(period);
        EXPECT_NEAR(travel.first, expected.first, 0.001) << period.count();
        EXPECT_EQ(travel.second, expected.second) << period.count();
    }
}

} // namespace
