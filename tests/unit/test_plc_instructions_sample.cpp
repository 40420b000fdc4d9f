#include "instructions/test_bench.h"
#include "projectfile.h"
#include "source_line.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <utility>

// The sample with every instruction, against the same calculations in C++.

namespace {

using plctest::Machine;

constexpr int cycles = 5000;

class InstructionsSample : public testing::Test
{
protected:
    template <typename Check> void ForManyCycles(Check check)
    {
        for (int cycle = 0; cycle < cycles; ++cycle) {
            ASSERT_FALSE(machine.Cycle());
            check();
            ASSERT_FALSE(HasFailure())
                << "cycle " << cycle << ", inputs " << machine.Read("EB0") << " "
                << machine.Read("ED2") << " " << machine.Read("ED8") << " " << machine.Read("ED12");
        }
    }

    bool In(int bit) const { return (machine.Read("EB0") >> bit & 1U) != 0; }

    std::int16_t Word(const char* name) const
    {
        return static_cast<std::int16_t>(machine.Read(name));
    }

    std::int32_t Double(const char* name) const
    {
        return static_cast<std::int32_t>(machine.Read(name));
    }

    Machine machine{"instructions/instructions.il", std::make_unique<samples::TestBench>()};
};

/// Bits in order, the first the lowest.
std::uint32_t Bits(std::initializer_list<bool> bits)
{
    std::uint32_t value = 0;
    std::uint32_t mask = 1;
    for (const bool bit : bits) {
        value |= bit ? mask : 0;
        mask <<= 1U;
    }
    return value;
}

TEST_F(InstructionsSample, HoldsEveryInstruction)
{
    std::ifstream in(ProjectFile("samples/instructions/instructions.il"));
    std::set<std::string> used;
    for (std::string line; std::getline(in, line);) {
        used.emplace(plc::SplitLine(line).mnemonic.text);
    }

    for (const plc::Instruction& instruction : plc::Instructions()) {
        EXPECT_EQ(used.count(std::string(instruction.mnemonic)), 1U) << instruction.mnemonic;
    }
}

TEST_F(InstructionsSample, CombinesBits)
{
    bool latch = false;
    bool before = false;
    ForManyCycles([&] {
        const bool a = In(0);
        const bool b = In(1);
        const bool c = In(2);
        const bool d = In(3);
        latch = (latch || a) && !b;
        const bool brackets = (a && (b || c) && !(c && d)) || (b && d);
        const bool nested = a || !(b && (!c || d));
        EXPECT_EQ(
            machine.Read("AB0"),
            Bits({(a && !b) || c || !d, brackets, nested, latch, a && !before, !a && before, !c}));
        before = a;
    });
}

TEST_F(InstructionsSample, CalculatesWords)
{
    ForManyCycles([&] {
        const std::int32_t a = Word("EW2");
        const std::int32_t b = Word("EW4");
        const std::int32_t quotient = b == 0 ? 0 : a / b;
        EXPECT_EQ(Word("AW4"), static_cast<std::int16_t>(a + b));
        EXPECT_EQ(Word("AW6"), static_cast<std::int16_t>(a - b));
        EXPECT_EQ(Word("AW8"), static_cast<std::int16_t>(a * b));
        EXPECT_EQ(Word("AW10"), static_cast<std::int16_t>(quotient));
        const auto isTooLarge = [](std::int32_t value) { return value < -32768 || value > 32767; };
        EXPECT_EQ(
            machine.Read("AB3") & 0xFU,
            Bits({isTooLarge(a + b), isTooLarge(a - b), isTooLarge(a * b), isTooLarge(quotient)}));
        EXPECT_EQ(machine.Read("AB1"), Bits({a == b, a != b, a > b, a >= b, a < b, a <= b}));
        EXPECT_EQ(Word("AW28"), a);
        EXPECT_EQ(Double("AD32"), a);
    });
}

TEST_F(InstructionsSample, CalculatesDoubleWords)
{
    ForManyCycles([&] {
        const std::int64_t a = Double("ED8");
        const std::int64_t b = Double("ED12");
        const std::int64_t quotient = b == 0 ? 0 : a / b;
        EXPECT_EQ(Double("AD12"), static_cast<std::int32_t>(a + b));
        EXPECT_EQ(Double("AD16"), static_cast<std::int32_t>(a - b));
        EXPECT_EQ(Double("AD20"), static_cast<std::int32_t>(a * b));
        EXPECT_EQ(Double("AD24"), static_cast<std::int32_t>(quotient));
        const auto isTooLarge = [](std::int64_t value) {
            return value != static_cast<std::int32_t>(value);
        };
        EXPECT_EQ(
            machine.Read("AB3") >> 4U,
            Bits({isTooLarge(a + b), isTooLarge(a - b), isTooLarge(a * b), isTooLarge(quotient)}));
        EXPECT_EQ(machine.Read("AB2"), Bits({a == b, a != b, a > b, a >= b, a < b, a <= b}));
    });
}

TEST_F(InstructionsSample, LoadsConstantsInEveryNotation)
{
    machine.Cycle();

    EXPECT_EQ(machine.Read("DB20.DBD0"), 0xFFFFFFFBU);
    EXPECT_EQ(machine.Read("DB20.DBD4"), 0x1A2B3C4DU);
    EXPECT_EQ(machine.Read("DB20.DBB8"), 0xA5U);
    EXPECT_EQ(machine.Read("DB20.DBD12"), 0xBFC00000U);
    EXPECT_EQ(machine.Read("DB20.DBD16"), 0U);
}

/// Which bits have risen since the cycle before.
class Edges
{
public:
    std::uint32_t Rising(std::uint32_t bits) { return bits & ~std::exchange(m_before, bits); }

private:
    std::uint32_t m_before = 0;
};

TEST_F(InstructionsSample, Counts)
{
    Edges edges;
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    ForManyCycles([&] {
        const std::uint32_t rising = edges.Rising(machine.Read("EB0"));
        first += rising & 1U;
        first -= (rising & 2U) != 0 && first > 0 ? 1 : 0;
        second = (rising & 4U) != 0 ? 20 : second;
        second -= (rising & 8U) != 0 && second > 0 ? 1 : 0;
        if (In(4)) {
            first = 0;
        }
        EXPECT_EQ(machine.Read("AW46"), first);
        EXPECT_EQ(machine.Read("AW48"), second);
        EXPECT_EQ(machine.IsOn("A38.3"), first > 0);
    });
}

TEST_F(InstructionsSample, Times)
{
    int on = 0;  // Cycles that E0.0 has been on, this one included.
    int off = 0; // Cycles since it fell, this one included; 0 when there is nothing to delay.
    ForManyCycles([&] {
        const bool falls = on > 0 && !In(0);
        on = In(0) ? on + 1 : 0;
        off = falls ? 1 : (off > 0 && !In(0) ? off + 1 : 0);
        off = In(4) ? 0 : off;
        const bool delayed = off > 0 && off <= 2;

        EXPECT_EQ(machine.IsOn("A38.0"), on == 1 || on == 2) << "pulse";
        EXPECT_EQ(machine.IsOn("A38.1"), on > 2) << "on delay";
        EXPECT_EQ(machine.IsOn("A38.2"), !In(4) && (on > 0 || delayed)) << "off delay";
        EXPECT_EQ(machine.Read("AW40"), on == 1 ? 2U : (on == 2 ? 1U : 0U));
        EXPECT_EQ(machine.Read("AW42"), machine.Read("AW40"));
        EXPECT_EQ(machine.Read("AW44"), delayed ? static_cast<std::uint32_t>(3 - off) : 0U);
    });
}

TEST_F(InstructionsSample, GoesTheRightWays)
{
    ForManyCycles([&] {
        EXPECT_EQ(machine.Read("AB53"), In(0) ? 2U : 1U);
        EXPECT_EQ(machine.Read("AB52"), In(1) ? 1U : 0U);
        EXPECT_EQ(machine.Read("AW54"), 210U);
        EXPECT_EQ(machine.Read("AB56"), 1U);
        EXPECT_EQ(machine.Read("AB57"), In(3) ? 0U : 1U);
        EXPECT_EQ(machine.Read("AB58"), In(2) ? 1U : 0U);
    });
}

} // namespace
