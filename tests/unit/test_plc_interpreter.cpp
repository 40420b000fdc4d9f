#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

// The way of a cycle through its blocks, and where it stops.

namespace {

using plc::StopCause;
using plctest::Assembled;
using plctest::Machine;
using plctest::ResultOf;
using std::chrono::milliseconds;

TEST(Jumps, ConditionalOnesLookAtTheLogicResult)
{
    const auto flags = [](const std::string& jump, std::uint32_t inputs) {
        Machine machine("U E0.0\n" + jump + " OUT\nL 1\nT MB0\nOUT: L 2\nT MB1");
        machine.Write("EB0", inputs);
        machine.Cycle();
        EXPECT_EQ(machine.Read("MB1"), 2U);
        return machine.Read("MB0");
    };

    EXPECT_EQ(flags("SPA", 0), 0U);
    EXPECT_EQ(flags("SPB", 0), 1U);
    EXPECT_EQ(flags("SPB", 1), 0U);
    EXPECT_EQ(flags("SPBN", 0), 0U);
    EXPECT_EQ(flags("SPBN", 1), 1U);
}

TEST(Jumps, MayGoBack)
{
    Machine machine("L 0\nT MW0\nNEXT: L MW0\nL 1\n+I\nT MW0\nL 500\n<I\nSPB NEXT");

    EXPECT_FALSE(machine.Cycle());

    EXPECT_EQ(machine.Read("MW0"), 500U);
}

TEST(Jumps, KeepTheResultAndEndTheLogic)
{
    EXPECT_TRUE(ResultOf("U E0.0\nSPA OUT\nOUT: NOP 0", 1));
    EXPECT_FALSE(ResultOf("U E0.0\nSPBN OUT\nOUT: U E0.1", 1));
}

TEST(Jumps, ALabelMayStandOnALineWithoutInstruction)
{
    Machine machine(
        "SPA OUT\nL 1\nT MB0\nOUT:\n// remark\n\nL 2\nT MB1\nSPA END\nL 3\nT MB2\nEND:");

    machine.Cycle();

    EXPECT_EQ(machine.Read("MD0"), 0x00020000U);
}

Machine WithBlocks(const std::string& source)
{
    return Machine(Assembled(plc::Assemble(source, "a.il")));
}

TEST(Calls, RunABlockAndComeBack)
{
    auto machine = WithBlocks("OB1: TITLE\n BA PB1\n L 2\n T MB1\n BE\n"
                              "PB1: TITLE\n L 1\n T MB0\n BE\n");

    machine.Cycle();

    EXPECT_EQ(machine.Read("MW0"), 0x0102U);
}

TEST(Calls, ConditionalCallsAndEnds)
{
    auto machine = WithBlocks("OB1: TITLE\n U E0.0\n BAB FB1\n BE\n"
                              "FB1: TITLE\n L 1\n T MB0\n U E0.1\n BEB\n L 1\n T MB1\n U E0.2\n"
                              " SPBN GO\n BEA\nGO: L 1\n T MB2\n BE\n");
    const auto flags = [&machine](std::uint32_t inputs) {
        machine.Write("EB0", inputs);
        machine.Write("MD0", 0);
        machine.Cycle();
        return machine.Read("MD0");
    };

    EXPECT_EQ(flags(0), 0U);
    EXPECT_EQ(flags(3), 0x01000000U);
    EXPECT_EQ(flags(5), 0x01010000U);
    EXPECT_EQ(flags(1), 0x01010100U);
}

TEST(Calls, HandResultAndAccumulatorsOverAndBack)
{
    auto machine = WithBlocks("OB1: TITLE\n L 3\n L 4\n U E0.0\n BA FB1\n = A0.0\n T MW0\n BE\n"
                              "FB1: TITLE\n = A0.1\n *I\n UN E0.0\n BE\n");
    machine.Write("E0.0", 1);

    machine.Cycle();

    EXPECT_EQ(machine.Read("MW0"), 12U);
    EXPECT_EQ(machine.Read("AB0"), 2U);
}

TEST(Calls, EveryCycleBeginsWithEmptyRegisters)
{
    Machine machine("T MW0\n= A0.0\nSPO OV\nL 1\nT MB9\nOV: L 32767\nL 1\n+I\nUN M99.0");

    machine.Cycle();
    machine.Write("MB9", 0);
    machine.Cycle();

    EXPECT_EQ(machine.Read("MW0"), 0U);
    EXPECT_FALSE(machine.IsOn("A0.0"));
    EXPECT_EQ(machine.Read("MB9"), 1U);
}

TEST(Stops, ADivisionByZeroNamesItsPlace)
{
    auto machine = WithBlocks("OB1: TITLE\n BA PB7\n L 1\n T MB0\n BE\n"
                              "PB7: TITLE\n // remark\n L 5\n L 16#10000\n /I\n BE\n");

    const auto stop = machine.Cycle();

    ASSERT_TRUE(stop);
    EXPECT_EQ(stop->cause, StopCause::DivisionByZero);
    EXPECT_EQ(plc::StopText(*stop), "division by zero in PB7, line 5");
    EXPECT_EQ(machine.Read("MB0"), 0U) << "nothing behind it is run";
}

TEST(Stops, ADivisionOfDoubleWordsByZeroToo)
{
    Machine machine("L 5\nL 0\n/D");

    EXPECT_EQ(machine.Cycle()->cause, StopCause::DivisionByZero);
}

TEST(Stops, AnEndlessLoopIsACycleTooLong)
{
    Machine machine(
        Assembled(plc::Assemble("OB1: TITLE\nX: SPA X\n BE\n", "a.il")), milliseconds{1});

    const auto stop = machine.Cycle();

    ASSERT_TRUE(stop);
    EXPECT_EQ(plc::StopText(*stop), "cycle too long in OB1, line 2");
}

TEST(Stops, ALoopThatCallsIsFoundAsWell)
{
    Machine machine(
        Assembled(plc::Assemble("OB1: TITLE\nX: BA PB1\n SPA X\n BE\nPB1: TITLE\n BE\n", "a.il")),
        milliseconds{1});

    EXPECT_EQ(machine.Cycle()->cause, StopCause::CycleTooLong);
}

TEST(Stops, ABlockThatCallsItselfCallsTooDeep)
{
    auto machine = WithBlocks("OB1: TITLE\n BA PB1\n BE\nPB1: TITLE\n BA PB1\n BE\n");

    const auto stop = machine.Cycle();

    ASSERT_TRUE(stop);
    EXPECT_EQ(plc::StopText(*stop), "too many calls inside each other in PB1, line 2");
}

TEST(Stops, ManyLevelsOfCallsAreFine)
{
    std::string source = "OB1: TITLE\n BA PB1\n BE\n";
    for (int i = 1; i < 64; ++i) {
        source += "PB" + std::to_string(i) + ": TITLE\n BA PB" + std::to_string(i + 1) + "\n BE\n";
    }
    source += "PB64: TITLE\n L 1\n T MB0\n BE\n";

    auto machine = WithBlocks(source);

    EXPECT_FALSE(machine.Cycle());
    EXPECT_EQ(machine.Read("MB0"), 1U);
}

TEST(Stops, AProgramThatNoAssemblerMadeCannotLeaveItsBlocks)
{
    const auto jumping = [](plc::Op op, std::uint32_t number) {
        plc::Program program = Assembled(plc::Assemble("OB1: TITLE\n NOP\n BE\n", "a.il"));
        program.blocks[0].lines[1].op = op;
        program.blocks[0].lines[1].number = number;
        return Machine(std::move(program)).Cycle();
    };

    ASSERT_TRUE(jumping(plc::Op::Jump, 3));
    EXPECT_EQ(plc::StopText(*jumping(plc::Op::Jump, 3)), "jump out of bounds in OB1, line 2");
    EXPECT_TRUE(jumping(plc::Op::Jump, UINT32_MAX));
    EXPECT_FALSE(jumping(plc::Op::Jump, 2));
    EXPECT_EQ(jumping(plc::Op::Call, 1)->cause, StopCause::JumpOutOfBounds);
    EXPECT_FALSE(jumping(plc::Op::Close, 0)) << "a bracket too many harms nobody";
}

TEST(Stops, ABlockWithoutEndEndsWithItsLastLine)
{
    plc::Program program = Assembled(plc::Assemble(plctest::CyclicBlock("L 1\nT MB0"), "a.il"));
    program.blocks[0].lines.pop_back();
    Machine machine(std::move(program));

    EXPECT_FALSE(machine.Cycle());

    EXPECT_EQ(machine.Read("MB0"), 1U);
}

TEST(Stops, TheNextCycleStartsAfresh)
{
    Machine machine("L 1\nL MW0\n/I\nL 1\nT MB9");

    const bool stopped = machine.Cycle().has_value();
    machine.Write("MW0", 1);
    const bool stoppedAgain = machine.Cycle().has_value();

    EXPECT_TRUE(stopped);
    EXPECT_FALSE(stoppedAgain);
    EXPECT_EQ(machine.Read("MB9"), 1U);
}

} // namespace
