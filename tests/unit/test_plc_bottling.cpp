#include "bottling/bottling.h"
#include "projectfile.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

// The demo machine, over simulated minutes.

namespace {

using samples::Bottle;
using namespace std::chrono_literals;

class Bottling : public testing::Test
{
protected:
    samples::BottlingView View() const { return m_line->View(); }

    /// Lets the line work until it has moved, so that it is in the middle of things.
    void RunIn() { machine.Run(30s); }

private:
    std::unique_ptr<samples::BottlingLine> m_owned = std::make_unique<samples::BottlingLine>();
    const samples::BottlingLine* m_line = m_owned.get();

protected:
    plctest::Machine machine{"bottling/bottling.il", std::move(m_owned)};
};

TEST_F(Bottling, RunsByItselfWithAllSwitchesInTheirDefaultPosition)
{
    machine.Run(5min);

    EXPECT_TRUE(machine.IsOn("A1.0"));
    EXPECT_FALSE(machine.IsOn("A1.1"));
    EXPECT_GT(View().delivered, 50U);
    EXPECT_EQ(machine.Read("DB20.DBW8"), 0U) << "faults";
    EXPECT_EQ(machine.Read("Z3"), 0U) << "rejects";
}

TEST_F(Bottling, EveryBottleLeavesFullAndNoneIsOverfilled)
{
    for (int second = 0; second < 300; ++second) {
        machine.Run(1s);
        for (const Bottle& bottle : View().bottles) {
            EXPECT_LE(bottle.level, 1.0);
            if (bottle.position > samples::fillPosition + 0.02) {
                EXPECT_GT(bottle.level, 0.9);
            }
            if (bottle.position < samples::fillPosition - 0.02) {
                EXPECT_EQ(bottle.level, 0.0);
            }
        }
    }
}

TEST_F(Bottling, TheValveOpensOnlyOverABottleAtRest)
{
    double travel = 0;
    int openCycles = 0;

    for (int cycle = 0; cycle < 12000; ++cycle) {
        machine.Cycle();
        const auto view = View();
        EXPECT_FALSE(view.valveOpen && (view.motorOn || !view.bottleAtValve)) << "cycle " << cycle;
        openCycles += view.valveOpen ? 1 : 0;
        EXPECT_GE(view.beltTravel, travel);
        travel = view.beltTravel;
    }

    EXPECT_GT(openCycles, 1000);
}

TEST_F(Bottling, CountsWhatPassesTheOutlet)
{
    machine.Run(4min);
    const auto view = View();
    const auto past = std::count_if(view.bottles.begin(), view.bottles.end(), [](const Bottle& b) {
        return b.position > samples::outletPosition;
    });

    const std::uint32_t bottles = machine.Read("MW20");
    EXPECT_NEAR(bottles, view.delivered + static_cast<unsigned>(past), 1);
    EXPECT_EQ(machine.Read("Z2") * 6 + machine.Read("Z1"), bottles);
    EXPECT_EQ(machine.Read("MD24"), bottles * 750);
    EXPECT_NEAR(machine.Read("MW22"), 12, 3) << "bottles a minute";
    EXPECT_EQ(machine.Read("DB20.DBW0"), bottles);
}

TEST_F(Bottling, TheTankIsRefilledBetweenItsMarks)
{
    double lowest = 1;
    double highest = 0;

    for (int second = 0; second < 300; ++second) {
        machine.Run(1s);
        lowest = std::min(lowest, View().tankLevel);
        highest = std::max(highest, View().tankLevel);
        EXPECT_EQ(machine.Read("MW32"), machine.Read("EW4") / 10);
    }

    EXPECT_GT(lowest, 0.2);
    EXPECT_LT(highest, 0.95);
    EXPECT_GT(highest, 0.85);
}

TEST_F(Bottling, TheClockCountsSeconds)
{
    machine.Run(90s);

    EXPECT_NEAR(machine.Read("MW16"), 30, 3);
    EXPECT_EQ(machine.Read("MW18"), 1U);
    EXPECT_NEAR(machine.Read("MD12"), 87, 4) << "seconds of running";
}

TEST_F(Bottling, StopHoldsUntilStart)
{
    RunIn();

    machine.Press("E0.1");
    machine.Run(10s);
    const bool stopped = !machine.IsOn("A1.0") && machine.IsOn("A1.3");
    const double travel = View().beltTravel;
    machine.Run(1s);
    const double travelLater = View().beltTravel;
    machine.Press("E0.0");

    EXPECT_TRUE(stopped);
    EXPECT_EQ(travel, travelLater);
    EXPECT_TRUE(machine.IsOn("A1.0"));
}

TEST_F(Bottling, WithoutAutomaticItWaitsForTheStartButton)
{
    machine.Write("E0.3", 0);
    machine.Run(20s);
    const bool waiting = !machine.IsOn("A1.0");

    machine.Press("E0.0");

    EXPECT_TRUE(waiting);
    EXPECT_TRUE(machine.IsOn("A1.0"));
}

TEST_F(Bottling, TheEmergencyStopEndsAllMovementAndIsAcknowledged)
{
    RunIn();

    machine.Write("E0.2", 0);
    machine.Run(1s);
    const auto view = View();
    machine.Press("E0.4");
    const bool faultWhileLocked = machine.IsOn("M2.1");
    machine.Write("E0.2", 1);
    machine.Run(5s);
    const bool runsUnacknowledged = machine.IsOn("A1.0");
    machine.Press("E0.4");
    machine.Run(3s);

    EXPECT_FALSE(view.motorOn || view.valveOpen || view.supplyOpen);
    EXPECT_TRUE(faultWhileLocked);
    EXPECT_FALSE(runsUnacknowledged);
    EXPECT_TRUE(machine.IsOn("A1.0"));
    EXPECT_EQ(machine.Read("DB20.DBW8"), 1U);
}

TEST_F(Bottling, AClosedInfeedIsReportedByHornAndBlinkingLamp)
{
    RunIn();
    machine.Write("E0.5", 0);

    EXPECT_TRUE(machine.RunUntil(60s, [this] { return machine.IsOn("M2.3"); }));
    EXPECT_TRUE(machine.IsOn("A0.3"));
    machine.Run(4s);
    EXPECT_FALSE(machine.IsOn("A0.3")) << "the horn stops by itself";
    EXPECT_TRUE(machine.RunUntil(1s, [this] { return machine.IsOn("A1.1"); }));
    EXPECT_TRUE(machine.RunUntil(1s, [this] { return !machine.IsOn("A1.1"); }));
    EXPECT_FALSE(machine.IsOn("A0.0"));
}

TEST_F(Bottling, ATrippedMotorProtectionStopsTheLine)
{
    RunIn();

    machine.Write("E0.6", 0);
    machine.Run(1s);

    EXPECT_TRUE(machine.IsOn("M2.2"));
    EXPECT_FALSE(machine.IsOn("A1.0"));
}

TEST_F(Bottling, AStopWhileFillingMakesTheBottleAReject)
{
    ASSERT_TRUE(machine.RunUntil(30s, [this] { return View().valveOpen; }));

    machine.Press("E0.1");
    machine.Press("E0.0");
    machine.Run(10s);

    EXPECT_EQ(machine.Read("Z3"), 1U);
    const auto bottles = View().bottles;
    EXPECT_TRUE(std::any_of(bottles.begin(), bottles.end(), [](const Bottle& bottle) {
        return bottle.position > samples::fillPosition && bottle.level < 0.9;
    })) << "it travels on, half full";
}

TEST_F(Bottling, WritingARecipeNumberChangesTheBottle)
{
    RunIn();

    machine.Write("DB10.DBW0", 2);
    machine.Run(30s);

    EXPECT_EQ(machine.Read("DB10.DBW16"), 500U);
    EXPECT_EQ(machine.Read("DB10.DBD12"), 0x3F000000U) << "0.5";
    const auto bottles = View().bottles;
    EXPECT_TRUE(std::any_of(bottles.begin(), bottles.end(), [](const Bottle& bottle) {
        return bottle.level > 0.6 && bottle.level < 0.7;
    }));
}

TEST_F(Bottling, ARecipeThatDoesNotExistIsPutBack)
{
    RunIn();

    machine.Write("DB10.DBW0", 9);
    machine.Cycle();

    EXPECT_EQ(machine.Read("DB10.DBW0"), 1U);
    EXPECT_EQ(machine.Read("DB10.DBW16"), 750U);
}

TEST_F(Bottling, NoValueInTheRecipeStopsThePlc)
{
    RunIn();

    for (const char* name : {"DB10.DBW2", "DB10.DBW4", "DB10.DBW6", "DB10.DBW8", "DB10.DBW16"}) {
        for (const std::uint32_t value : {0U, 0x7FFFU, 0x8000U, 0xFFFFU}) {
            machine.Write(name, value);
            EXPECT_FALSE(machine.Cycle()) << name << " " << value;
        }
    }
}

TEST_F(Bottling, EveryVariableOfItsWatchListExistsAndMostOfThemMove)
{
    std::ifstream in(ProjectFile("samples/bottling/bottling.plc"));
    std::vector<std::string> names;
    std::set<std::string> formats;
    for (std::string line; std::getline(in, line);) {
        ASSERT_GT(line.size(), 2U);
        names.push_back(line.substr(0, line.size() - 2));
        formats.insert(line.substr(line.size() - 2));
        ASSERT_TRUE(plc::ParseOperand(names.back())) << line;
        ASSERT_TRUE(plc::Exists(*plc::ParseOperand(names.back()))) << line;
    }
    std::vector<std::set<std::uint32_t>> values(names.size());

    for (int second = 0; second < 180; ++second) {
        machine.Run(1s);
        for (std::size_t i = 0; i < names.size(); ++i) {
            values[i].insert(machine.Read(names[i]));
        }
    }

    EXPECT_LE(names.size(), 20U);
    EXPECT_EQ(formats, (std::set<std::string>{"/B", "/D", "/G", "/H"}));
    const auto moving = std::count_if(
        values.begin(), values.end(), [](const auto& seen) { return seen.size() > 1; });
    EXPECT_GE(moving, 15);
}

TEST_F(Bottling, SwitchesAndLampsAreBitsOfTheMachine)
{
    for (const auto& element : samples::bottlingSwitches) {
        EXPECT_EQ(machine.IsOn(element.operand), element.initially) << element.english;
    }
    for (const auto& element : samples::bottlingLamps) {
        EXPECT_NO_THROW(plc::Image::CellOf(element.operand)) << element.english;
    }
}

} // namespace
