#include "processor.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

// Each instruction that calculates, by what a cycle leaves in the image.

namespace {

using plctest::Machine;
using plctest::ResultOf;
using std::chrono::milliseconds;

/// Accumulator 1 after @p body.
std::uint32_t AccumulatorOf(const std::string& body)
{
    Machine machine(body + "\nT MD100");
    EXPECT_FALSE(machine.Cycle());
    return machine.Read("MD100");
}

TEST(BitLogic, TheFirstBitReplacesTheLogicResult)
{
    EXPECT_TRUE(ResultOf("U E0.0", 1));
    EXPECT_TRUE(ResultOf("O E0.0", 1));
    EXPECT_TRUE(ResultOf("UN E0.0", 0));
    EXPECT_TRUE(ResultOf("ON E0.0", 0));
    EXPECT_FALSE(ResultOf("U E0.0\n= M0.0\nU E0.1", 1));
}

TEST(BitLogic, FollowsFromTopToBottom)
{
    for (std::uint32_t in = 0; in < 8; ++in) {
        const bool a = (in & 1U) != 0;
        const bool b = (in & 2U) != 0;
        const bool c = (in & 4U) != 0;
        EXPECT_EQ(ResultOf("U E0.0\nU E0.1\nO E0.2", in), (a && b) || c) << in;
        EXPECT_EQ(ResultOf("O E0.0\nO E0.1\nU E0.2", in), (a || b) && c) << in;
        EXPECT_EQ(ResultOf("U E0.0\nUN E0.1\nON E0.2", in), (a && !b) || !c) << in;
    }
}

TEST(BitLogic, BracketsComeFirst)
{
    for (std::uint32_t in = 0; in < 8; ++in) {
        const bool a = (in & 1U) != 0;
        const bool b = (in & 2U) != 0;
        const bool c = (in & 4U) != 0;
        EXPECT_EQ(ResultOf("U E0.0\nU(\nO E0.1\nO E0.2\n)", in), a && (b || c)) << in;
        EXPECT_EQ(ResultOf("U E0.0\nUN(\nO E0.1\nO E0.2\n)", in), a && !(b || c)) << in;
        EXPECT_EQ(ResultOf("U E0.0\nO(\nU E0.1\nU E0.2\n)", in), a || (b && c)) << in;
        EXPECT_EQ(ResultOf("U E0.0\nON(\nU E0.1\nU E0.2\n)", in), a || !(b && c)) << in;
    }
}

TEST(BitLogic, ABracketMayBeginALogicAndHoldAnother)
{
    for (std::uint32_t in = 0; in < 8; ++in) {
        const bool a = (in & 1U) != 0;
        const bool b = (in & 2U) != 0;
        const bool c = (in & 4U) != 0;
        EXPECT_EQ(ResultOf("UN(\nU E0.0\nU(\nO E0.1\nO E0.2\n)\n)", in), !(a && (b || c))) << in;
    }
}

TEST(BitLogic, AnAssignmentEndsTheLogicButKeepsTheResult)
{
    Machine machine("U E0.0\n= A0.0\n= A0.1\nS A0.2\nR A0.3");
    machine.Write("EB0", 1);
    machine.Write("A0.3", 1);

    machine.Cycle();

    EXPECT_EQ(machine.Read("AB0"), 0b0111U);
}

TEST(BitLogic, SetAndResetActOnlyWithTheResultOn)
{
    Machine machine("U E0.0\nS A0.0\nU E0.1\nR A0.0");

    machine.Write("EB0", 1);
    machine.Cycle();
    machine.Write("EB0", 0);
    machine.Cycle();
    const bool kept = machine.IsOn("A0.0");
    machine.Write("EB0", 2);
    machine.Cycle();

    EXPECT_TRUE(kept);
    EXPECT_FALSE(machine.IsOn("A0.0"));
}

TEST(BitLogic, EdgesLastForOneCycle)
{
    Machine machine("U E0.0\nFP M0.0\n= A0.0\nU E0.0\nFN M0.1\n= A0.1");
    std::vector<std::uint32_t> outputs;

    for (const std::uint32_t in : {0U, 1U, 1U, 0U, 0U, 1U}) {
        machine.Write("EB0", in);
        machine.Cycle();
        outputs.push_back(machine.Read("AB0"));
    }

    EXPECT_EQ(outputs, (std::vector<std::uint32_t>{0, 1, 0, 2, 0, 1}));
}

TEST(BitLogic, AnEdgeMayBeCombinedFurther)
{
    EXPECT_FALSE(ResultOf("U E0.0\nFP M0.0\nU E0.1", 1));
    EXPECT_TRUE(ResultOf("U E0.0\nFP M0.0\nU E0.1", 3));
}

TEST(BitLogic, DataBlockBitsAreBitsLikeOthers)
{
    Machine machine("UN DB10.DBX3.1\nS DB10.DBX3.1\nS DB64.DBX81.7");

    machine.Cycle();

    EXPECT_EQ(machine.Read("DB10.DBB3"), 2U);
    EXPECT_EQ(machine.Read("DB64.DBB81"), 0x80U);
}

TEST(Loads, PushTheFirstAccumulatorIntoTheSecond)
{
    EXPECT_EQ(AccumulatorOf("L 5\nL 7\nTAK"), 5U);
    EXPECT_EQ(AccumulatorOf("L 5\nL 7\nTAK\nTAK"), 7U);
}

TEST(Loads, BytesAndWordsAreFilledWithZeros)
{
    EXPECT_EQ(AccumulatorOf("L -1\nT MD0\nL MB0"), 0xFFU);
    EXPECT_EQ(AccumulatorOf("L -1\nT MD0\nL MW0"), 0xFFFFU);
    EXPECT_EQ(AccumulatorOf("L -1\nT MD0\nL MD0"), 0xFFFFFFFFU);
}

TEST(Loads, ConstantsInEveryNotation)
{
    EXPECT_EQ(AccumulatorOf("L 16#DEADBEEF"), 0xDEADBEEFU);
    EXPECT_EQ(AccumulatorOf("L 2#101"), 5U);
    EXPECT_EQ(AccumulatorOf("L 1.5"), 0x3FC00000U);
    EXPECT_EQ(AccumulatorOf("L -5"), 0xFFFFFFFBU);
}

TEST(Loads, ATransferTakesTheLowestBytes)
{
    Machine machine("L 16#01020304\nT MB0\nT MW2\nT DB10.DBD4");

    machine.Cycle();

    EXPECT_EQ(machine.Read("MD0"), 0x04000304U);
    EXPECT_EQ(machine.Read("DB10.DBD4"), 0x01020304U);
}

TEST(Loads, LeaveTheLogicAlone)
{
    EXPECT_TRUE(ResultOf("U E0.0\nL 5\nT MB9\n+I\nU E0.1", 3));
    EXPECT_FALSE(ResultOf("U E0.0\nL 5\nT MB9\n+I\nU E0.1", 1));
}

TEST(Arithmetic, WordsAreSignedAndFillTheAccumulatorWithZeros)
{
    EXPECT_EQ(AccumulatorOf("L 7\nL 9\n-I"), 0xFFFEU);
    EXPECT_EQ(AccumulatorOf("L -7\nL 9\n+I"), 2U);
    EXPECT_EQ(AccumulatorOf("L -7\nL 9\n*I"), 0xFFC1U);
    EXPECT_EQ(AccumulatorOf("L -7\nL 2\n/I"), 0xFFFDU);
    EXPECT_EQ(AccumulatorOf("L 16#10005\nL 16#20003\n+I"), 8U) << "only the low words count";
    EXPECT_EQ(AccumulatorOf("L 32767\nL 1\n+I"), 0x8000U);
}

TEST(Arithmetic, DoubleWordsUseAll32Bits)
{
    EXPECT_EQ(AccumulatorOf("L 70000\nL 5\n+D"), 70005U);
    EXPECT_EQ(AccumulatorOf("L 5\nL 70000\n-D"), static_cast<std::uint32_t>(-69995));
    EXPECT_EQ(AccumulatorOf("L -70000\nL 3\n*D"), static_cast<std::uint32_t>(-210000));
    EXPECT_EQ(AccumulatorOf("L -70000\nL 3\n/D"), static_cast<std::uint32_t>(-23333));
    EXPECT_EQ(AccumulatorOf("L -2147483648\nL -1\n/D"), 0x80000000U);
}

TEST(Arithmetic, LeavesTheSecondAccumulator)
{
    EXPECT_EQ(AccumulatorOf("L 7\nL 9\n+I\nTAK"), 7U);
}

TEST(Arithmetic, ExtendsTheSignOfAWord)
{
    EXPECT_EQ(AccumulatorOf("L 16#FFFE\nITD"), 0xFFFFFFFEU);
    EXPECT_EQ(AccumulatorOf("L 16#10007\nITD"), 7U);
}

TEST(Arithmetic, OverflowIsKeptUntilTheNextCalculation)
{
    const std::vector<std::pair<const char*, bool>> cases{
        {"L 32767\nL 1\n+I", true},
        {"L 32767\nL 0\n+I", false},
        {"L -32768\nL 1\n-I", true},
        {"L 200\nL 200\n*I", true},
        {"L -32768\nL -1\n/I", true},
        {"L 2147483647\nL 1\n+D", true},
        {"L 32767\nL 1\n+D", false},
        {"L 65536\nL 65536\n*D", true},
        {"L -2147483648\nL -1\n/D", true},
        {"L 32767\nL 1\n+I\nL 5\nT MW0\n==I", true},
        {"L 32767\nL 1\n+I\nL 5\n+D", false}};
    for (const auto& [body, overflows] : cases) {
        Machine machine(std::string(body) + "\nSPO OV\nL 1\nT MW100\nOV: NOP 0");
        machine.Cycle();
        EXPECT_EQ(machine.Read("MW100") == 0, overflows) << body;
    }
}

class Relation : public testing::TestWithParam<std::tuple<const char*, bool, bool, bool>>
{
};

TEST_P(Relation, ComparesTheSecondAccumulatorWithTheFirst)
{
    const auto& [relation, less, equal, greater] = GetParam();
    for (const char* width : {"I", "D"}) {
        const std::string name = std::string(relation) + width;
        EXPECT_EQ(ResultOf("L -3\nL 2\n" + name, 0), less) << name;
        EXPECT_EQ(ResultOf("L 2\nL 2\n" + name, 0), equal) << name;
        EXPECT_EQ(ResultOf("L 2\nL -3\n" + name, 0), greater) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllRelations,
    Relation,
    testing::Values(
        std::tuple{"==", false, true, false},
        std::tuple{"<>", true, false, true},
        std::tuple{">", false, false, true},
        std::tuple{">=", false, true, true},
        std::tuple{"<", true, false, false},
        std::tuple{"<=", true, true, false}));

TEST(Comparison, WordsLookAtTheLowWordsOnly)
{
    EXPECT_TRUE(ResultOf("L 16#10002\nL 2\n==I", 0));
    EXPECT_FALSE(ResultOf("L 16#10002\nL 2\n==D", 0));
    EXPECT_TRUE(ResultOf("L 16#FFFF\nL 0\n<I", 0)) << "a word is signed";
    EXPECT_FALSE(ResultOf("L 16#FFFF\nL 0\n<D", 0));
}

TEST(Comparison, ReplacesTheLogicResultAndIsCombinedFurther)
{
    EXPECT_TRUE(ResultOf("U E0.1\nL 1\nL 1\n==I", 0));
    EXPECT_FALSE(ResultOf("L 1\nL 1\n==I\nU E0.0", 0));
    EXPECT_TRUE(ResultOf("U E0.0\nU(\nL 1\nL 1\n==I\n)", 1));
    EXPECT_FALSE(ResultOf("U E0.0\nU(\nL 1\nL 1\n==I\n)", 0));
}

TEST(Timers, CountInTensOfMilliseconds)
{
    Machine machine("U E0.0\nL 3\nSE T1\nU T1\n= A0.0\nL T1\nT MW0");
    machine.Write("E0.0", 1);
    std::vector<std::pair<std::uint32_t, bool>> seen;

    for (int i = 0; i < 5; ++i) {
        machine.Cycle(milliseconds{10});
        seen.emplace_back(machine.Read("MW0"), machine.IsOn("A0.0"));
    }

    EXPECT_EQ(
        seen,
        (std::vector<std::pair<std::uint32_t, bool>>{
            {3, false}, {2, false}, {1, false}, {0, true}, {0, true}}));
}

TEST(Timers, AllThreeKindsAndTheirReset)
{
    Machine machine("U E0.0\nL 5\nSI T1\nSA T2\nSE T3\nU E0.1\nR T1\nR T2\nR T3\n"
                    "U T1\n= A0.1\nU T2\n= A0.2\nU T3\n= A0.3");
    const auto outputs = [&machine](std::uint32_t inputs, int time) {
        machine.Write("EB0", inputs);
        machine.Cycle(milliseconds{time});
        return machine.Read("AB0");
    };

    EXPECT_EQ(outputs(1, 10), 0b0110U);
    EXPECT_EQ(outputs(1, 50), 0b1100U);
    EXPECT_EQ(outputs(0, 10), 0b0100U);
    EXPECT_EQ(outputs(0, 40), 0b0100U);
    EXPECT_EQ(outputs(0, 10), 0b0000U);
    EXPECT_EQ(outputs(1, 10), 0b0110U);
    EXPECT_EQ(outputs(3, 10), 0b0000U);
}

TEST(Timers, ATimerIsQueriedInLogicLikeABit)
{
    EXPECT_TRUE(ResultOf("UN T9\nON T8", 0));
    EXPECT_TRUE(ResultOf("U E0.0\nL 5\nSI T9\nU E0.0\nU T9", 1));
}

TEST(Counters, CountEdgesAndSetAndReset)
{
    Machine machine("U E0.0\nZV Z1\nU E0.1\nZR Z1\nU E0.2\nL 20\nS Z1\nU E0.3\nR Z1\n"
                    "L Z1\nT MW0\nU Z1\n= A0.0");
    const auto count = [&machine](std::uint32_t inputs) {
        machine.Write("EB0", inputs);
        machine.Cycle();
        EXPECT_EQ(machine.IsOn("A0.0"), machine.Read("MW0") > 0);
        return machine.Read("MW0");
    };

    EXPECT_EQ(count(1), 1U);
    EXPECT_EQ(count(1), 1U);
    EXPECT_EQ(count(0), 1U);
    EXPECT_EQ(count(1), 2U);
    EXPECT_EQ(count(2), 1U);
    EXPECT_EQ(count(4), 20U);
    EXPECT_EQ(count(5), 21U) << "set acts on its edge only";
    EXPECT_EQ(count(8), 0U);
}

TEST(Instructions, EveryOneDoesSomethingButTheRemarks)
{
    for (const plc::Instruction& instruction : plc::Instructions()) {
        EXPECT_EQ(plc::OperationOf(instruction.op) == nullptr, instruction.op == plc::Op::Remark)
            << instruction.mnemonic;
    }
}

TEST(Instructions, HaveNamesOfTheirOwn)
{
    for (const plc::Instruction& instruction : plc::Instructions()) {
        EXPECT_EQ(plc::FindInstruction(instruction.mnemonic), &instruction);
    }
    EXPECT_EQ(plc::FindInstruction("u"), nullptr);
    EXPECT_EQ(plc::FindInstruction(""), nullptr);
}

} // namespace
