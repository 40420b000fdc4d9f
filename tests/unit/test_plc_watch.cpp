#include "test_plc_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace plc {

void PrintTo(const StepState& state, std::ostream* out)
{
    *out << state.logicResult << "/";
    if (state.accumulator) {
        *out << *state.accumulator;
    } else {
        *out << "-";
    }
}

} // namespace plc

// What the listing shows of a running program.

namespace {

using plc::StepState;
using plctest::Assembled;
using plctest::Machine;
using testing::ElementsAre;
using testing::IsEmpty;

/// On or off, without a value.
StepState Bit(bool on)
{
    return {on, std::nullopt};
}

StepState Value(bool on, std::int32_t value)
{
    return {on, value};
}

TEST(Watch, RecordsLogicResultAndAccumulatorAfterEachLine)
{
    Machine machine("U E0.0\nL 7\nL -5\n+I\n= A0.0\nT MW0\n==I\nZV Z1\nL 9\nS Z2\nSI T1");
    machine.Write("E0.0", 1);

    machine.Watch(1, 11);
    machine.Cycle();

    EXPECT_THAT(
        machine.States(),
        ElementsAre(
            Bit(true),
            Value(true, 7),
            Value(true, -5),
            Value(true, 2),
            Bit(true),
            Value(true, 2),
            Value(false, 2),
            Bit(false),
            Value(false, 9),
            Value(false, 9),
            Value(false, 9)));
}

TEST(Watch, ASetBitShowsNoValueASetCounterDoes)
{
    Machine machine("L 9\nS A0.0\nS Z2");

    machine.Watch(2, 3);
    machine.Cycle();

    EXPECT_THAT(machine.States(), ElementsAre(Bit(false), Value(false, 9)));
}

TEST(Watch, ALineWithoutInstructionShowsTheResultThatPassesBy)
{
    Machine machine("U E0.0\n// remark\n\nLAB:\nUN E0.0");
    machine.Write("E0.0", 1);

    machine.Watch(1, 5);
    machine.Cycle();

    EXPECT_THAT(
        machine.States(), ElementsAre(Bit(true), Bit(true), Bit(true), Bit(true), Bit(false)));
}

TEST(Watch, LinesThatThePageTakesForRemarksHaveNoStepButAreRun)
{
    Machine machine("U E0.0 // NOP\n= A0.0\nNETWORK 2\n= A0.1");
    machine.Write("E0.0", 1);

    machine.Watch(1, 2);
    machine.Cycle();

    EXPECT_THAT(machine.States(), ElementsAre(Bit(true), Bit(true)));
    EXPECT_EQ(machine.Read("AB0"), 3U);
}

TEST(Watch, JumpsAndEndsShowTheResultTakenOrNot)
{
    Machine machine("U E0.0\nSPB OUT\nUN E0.0\nSPA OUT\nL 1\nOUT: U E0.0");

    machine.Watch(1, 7);
    machine.Cycle();

    EXPECT_THAT(
        machine.States(),
        ElementsAre(
            Bit(false), Bit(false), Bit(true), Bit(true), Bit(false), Bit(false), Bit(false)));
    machine.Write("E0.0", 1);
    machine.Cycle();
    EXPECT_THAT(
        machine.States(),
        ElementsAre(Bit(true), Bit(true), Bit(true), Bit(true), Bit(false), Bit(true), Bit(true)))
        << "lines that were jumped over keep what they had";
}

TEST(Watch, AJumpToAWatchedLabelRecordsIt)
{
    Machine machine("UN E0.0\nSPB OUT\nL 1\nOUT: // remark\nL 5");

    machine.Watch(4, 5);
    machine.Cycle();

    EXPECT_THAT(machine.States(), ElementsAre(Bit(true), Value(true, 5)));
}

TEST(Watch, CallsAndTheBlocksBehindThemAreRecorded)
{
    Machine machine(Assembled(plc::Assemble(
        "OB1: TITLE\n UN E0.0\n BA PB1\n// after\n BE\nPB1: TITLE\n U E0.0\n BEB\n L 3\n BE\n",
        "a.il")));

    machine.Watch(1, 8);
    machine.Cycle();

    EXPECT_THAT(
        machine.States(),
        ElementsAre(
            Bit(true),
            Bit(true),
            Bit(false),
            Bit(false),
            Bit(false),
            Bit(false),
            Value(false, 3),
            Bit(false)));
}

TEST(Watch, AConditionalBlockEndThatIsTakenIsRecorded)
{
    Machine machine("UN E0.0\nBEB\nL 1");

    machine.Watch(1, 3);
    machine.Cycle();

    EXPECT_THAT(machine.States(), ElementsAre(Bit(true), Bit(true), Bit(false)));
}

TEST(Watch, OnlyTheWatchedRangeHasStates)
{
    Machine machine("L 1\nL 2\nL 3\nL 4");

    machine.Watch(2, 3);
    machine.Cycle();

    EXPECT_THAT(machine.States(), ElementsAre(Value(false, 2), Value(false, 3)));
}

TEST(Watch, ANewRangeKeepsWhatItSharesWithTheFormer)
{
    Machine machine("L 1\nL 2\nL 3\nL 4");
    machine.Watch(1, 3);
    machine.Cycle();

    machine.Watch(2, 4);

    EXPECT_THAT(machine.States(), ElementsAre(Value(false, 2), Value(false, 3), Bit(false)));
}

TEST(Watch, EndsWithNothingToWatch)
{
    Machine machine("L 1");
    machine.Watch(1, 1);

    machine.StopWatching();
    machine.Cycle();

    EXPECT_THAT(machine.States(), IsEmpty());
}

TEST(Watch, StepsThatTheProgramDoesNotHaveStayEmpty)
{
    Machine machine("L 1");

    machine.Watch(-3, 5);
    machine.Cycle();

    EXPECT_EQ(machine.States().size(), 9U);
    EXPECT_EQ(machine.States()[4], Value(false, 1));
    EXPECT_EQ(machine.States()[0], Bit(false));
    EXPECT_EQ(machine.States()[8], Bit(false));
}

TEST(Watch, RefusesARangeUpsideDownOrTooLong)
{
    Machine machine("L 1");

    EXPECT_FALSE(machine.Watch(5, 4));
    EXPECT_FALSE(machine.Watch(INT32_MIN, INT32_MAX));
    EXPECT_FALSE(machine.Watch(1, plc::maxWatchedSteps + 1));
    EXPECT_TRUE(machine.Watch(1, plc::maxWatchedSteps));
    EXPECT_TRUE(machine.Watch(INT32_MAX, INT32_MAX));
    EXPECT_FALSE(machine.Watch(5, 4));
    EXPECT_THAT(machine.States(), IsEmpty()) << "a refused range ends the watching";
}

TEST(Watch, ChangesNothingThatTheProgramDoes)
{
    const std::string body = "NEXT: U E0.0\nSPB OUT\nL MW0\nL 1\n+I\nT MW0\nL 100\n<I\nSPB NEXT\n"
                             "OUT: L MW0\nL 3\n*I\nT MW2";
    Machine watched(body);
    Machine unwatched(body);

    watched.Watch(3, 8);
    watched.Cycle();
    unwatched.Cycle();

    EXPECT_EQ(watched.Read("MD0"), unwatched.Read("MD0"));
    EXPECT_EQ(watched.Read("MW2"), 300U);
}

TEST(Watch, AStoppingLineLeavesWhatWasRecordedBeforeIt)
{
    Machine machine("L 1\nL 0\n/I\nL 5");
    machine.Watch(1, 4);

    EXPECT_TRUE(machine.Cycle());

    EXPECT_THAT(
        machine.States(), ElementsAre(Value(false, 1), Value(false, 0), Bit(false), Bit(false)));
}

} // namespace
