#include "lift/lift.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <string>

// The lift with its passengers over simulated minutes.

namespace {

using namespace std::chrono_literals;

class LiftTest : public testing::Test
{
protected:
    /// A lift with a passenger every 12 seconds, or one that nobody wants.
    explicit LiftTest(double interval = 12)
        : m_owned(std::make_unique<samples::Lift>(interval)), lift(*m_owned),
          machine("lift/lift.il", std::move(m_owned))
    {
    }

    /// Sets the call for a floor, 1 to 4.
    void Call(int floor) { machine.Write("M10." + std::to_string(floor - 1), 1); }

    bool AwaitDoorOpenAt(int floor)
    {
        return machine.RunUntil(2min, [this, floor] {
            return lift.Door() >= 1 && std::abs(lift.Position() - (floor - 1)) < 0.02;
        });
    }

private:
    std::unique_ptr<samples::Lift> m_owned;

protected:
    const samples::Lift& lift;
    plctest::Machine machine;
};

/// Without passengers; the tests call it themselves.
class EmptyLift : public LiftTest
{
protected:
    EmptyLift() : LiftTest(1e12) {}
};

TEST_F(LiftTest, CarriesEverybodyWhereTheyWantToGo)
{
    machine.Run(10min);

    EXPECT_GT(lift.Carried(), 30U);
    EXPECT_LT(lift.LongestTime(), 120);
    EXPECT_LT(lift.Passengers().size(), 10U);
    EXPECT_GT(machine.Read("MW6"), 15U) << "trips";
}

TEST_F(LiftTest, NeverMovesWithAnOpenDoorNorOpensBetweenFloors)
{
    const bool failed = machine.RunUntil(5min, [this] {
        const bool isMoving = std::abs(lift.Speed()) > 0;
        const double fromFloor = std::abs(lift.Position() - std::round(lift.Position()));
        return lift.Door() > 0 && (isMoving || fromFloor > 0.02);
    });

    EXPECT_FALSE(failed) << "at " << lift.Position() << " with the door at " << lift.Door();
}

TEST_F(LiftTest, StaysBetweenTheLowestAndTheHighestFloor)
{
    const bool failed = machine.RunUntil(
        5min, [this] { return lift.Position() < -0.02 || lift.Position() > 3.02; });

    EXPECT_FALSE(failed) << lift.Position();
}

TEST_F(LiftTest, TheDoorNeverClosesOnSomebody)
{
    double before = 0;
    const bool failed = machine.RunUntil(5min, [&] {
        const bool closes = lift.Door() < before;
        before = lift.Door();
        return closes && machine.IsOn("E2.2");
    });

    EXPECT_FALSE(failed);
}

TEST_F(LiftTest, ShowsItsFloorAndTheCalls)
{
    machine.RunUntil(5min, [this] {
        for (int floor = 1; floor <= 4; ++floor) {
            if (std::abs(lift.Position() - (floor - 1)) < 0.01) {
                EXPECT_EQ(machine.Read("AB2"), static_cast<std::uint32_t>(floor));
            }
        }
        EXPECT_EQ(machine.Read("AB1"), machine.Read("MB10"));
        return HasFailure();
    });
}

TEST_F(EmptyLift, GoesDownToAFloorAfterPowerOnBetweenTwo)
{
    machine.Run(30s);

    EXPECT_NEAR(lift.Position(), 1, 0.02);
    EXPECT_TRUE(machine.IsOn("A3.1")) << "ready";
    EXPECT_EQ(lift.Door(), 0);
}

TEST_F(EmptyLift, ServesCallsOnItsWayFirst)
{
    Call(4);
    ASSERT_TRUE(AwaitDoorOpenAt(4));
    Call(1);
    Call(3);
    machine.Run(2s);

    ASSERT_TRUE(AwaitDoorOpenAt(3));
    machine.Run(50ms);
    EXPECT_FALSE(machine.IsOn("A1.2"));
    EXPECT_TRUE(machine.IsOn("A1.0")) << "the call for the first floor still waits";
    EXPECT_TRUE(AwaitDoorOpenAt(1));
}

TEST_F(EmptyLift, KeepsItsDirectionBeforeItTurnsRound)
{
    Call(2);
    ASSERT_TRUE(AwaitDoorOpenAt(2));
    Call(3);
    ASSERT_TRUE(AwaitDoorOpenAt(3));
    Call(2);
    Call(4);

    ASSERT_TRUE(machine.RunUntil(1min, [this] { return lift.Speed() != 0; }));
    EXPECT_GT(lift.Speed(), 0) << "upwards first, because it came upwards";
    EXPECT_TRUE(AwaitDoorOpenAt(4));
    EXPECT_TRUE(AwaitDoorOpenAt(2));
}

TEST_F(EmptyLift, TheEmergencyStopHoldsEverything)
{
    Call(4);
    ASSERT_TRUE(machine.RunUntil(1min, [this] { return lift.Speed() > 0; }));

    machine.Write("E2.4", 0);
    machine.Run(1s);
    const double position = lift.Position();
    machine.Run(10s);
    const double later = lift.Position();
    machine.Write("E2.4", 1);

    EXPECT_EQ(position, later);
    EXPECT_TRUE(AwaitDoorOpenAt(4));
}

TEST_F(EmptyLift, AnOverloadKeepsTheDoorOpen)
{
    Call(3);
    ASSERT_TRUE(AwaitDoorOpenAt(3));
    machine.Write("E2.3", 1);
    machine.Run(30s);
    const bool open = lift.Door() >= 1;
    const bool lamp = machine.IsOn("A3.0");
    machine.Write("E2.3", 0);
    machine.Run(10s);

    EXPECT_TRUE(open);
    EXPECT_TRUE(lamp);
    EXPECT_EQ(lift.Door(), 0);
}

TEST_F(EmptyLift, ACallForTheFloorWhereItStandsOpensTheDoor)
{
    machine.Run(30s);

    Call(2);

    EXPECT_TRUE(machine.RunUntil(5s, [this] { return lift.Door() >= 1; }));
    EXPECT_NEAR(lift.Position(), 1, 0.02);
}

TEST_F(EmptyLift, TheOpenTimeOfTheDataBlockCounts)
{
    const auto openCycles = [this](int floor) {
        Call(floor);
        EXPECT_TRUE(AwaitDoorOpenAt(floor));
        int cycles = 0;
        machine.RunUntil(1min, [&] {
            ++cycles;
            return lift.Door() < 1;
        });
        return cycles;
    };

    EXPECT_NEAR(openCycles(3), 300, 5);
    machine.Write("DB10.DBW0", 1000);
    EXPECT_NEAR(openCycles(1), 1000, 5);
}

} // namespace
