#include "debug_file.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// A generated program of the largest size: 400 blocks, the last of 65,535 lines.

namespace {

constexpr std::size_t blocks = 400;
constexpr std::size_t lastBlockLines = 65535;
constexpr std::size_t addsPerBlock = 40;

/// A block that adds 1 to MD0 as often as it says.
std::string AddingBlock(const std::string& name, std::size_t additions, const std::string& calls)
{
    std::string text = name + ": TITLE Generated\n" + calls;
    for (std::size_t i = 0; i < additions; ++i) {
        text += " L MD0\n L 1\n +D\n T MD0\n";
    }
    return text + " BE\n";
}

std::string NameOf(std::size_t block)
{
    return block < 300 ? "PB" + std::to_string(block) : "FB" + std::to_string(block);
}

std::string GeneratedSource()
{
    std::string calls;
    for (std::size_t block = 1; block < blocks; ++block) {
        calls += " BA " + NameOf(block) + "\n";
    }
    std::string source = AddingBlock("OB1", 0, calls);
    for (std::size_t block = 1; block < blocks - 1; ++block) {
        source += AddingBlock(NameOf(block), addsPerBlock, "");
    }
    // Title, remark and end fill the last one up.
    return source + AddingBlock(NameOf(blocks - 1), (lastBlockLines - 3) / 4, "// a remark\n");
}

class LargeProgram : public testing::Test
{
protected:
    static constexpr std::uint32_t additions =
        (blocks - 2) * addsPerBlock + (lastBlockLines - 3) / 4;
    plc::Program program = plctest::Assembled(plc::Assemble(GeneratedSource(), "large.il"));
};

TEST_F(LargeProgram, IsAssembledWhole)
{
    EXPECT_EQ(program.blocks.size(), 400U);
    EXPECT_EQ(program.blocks.back().lines.size(), lastBlockLines);
    EXPECT_LE(program.blocks.back().firstStep, 65535);
    EXPECT_GT(program.blocks.back().lines.back().step, 65535) << "steps may pass 16 bits";
}

TEST_F(LargeProgram, RunsToItsEndInEveryCycle)
{
    plctest::Machine machine(program);

    for (int cycle = 0; cycle < 20; ++cycle) {
        ASSERT_FALSE(machine.Cycle());
    }

    EXPECT_EQ(machine.Read("MD0"), 20 * additions);
}

TEST_F(LargeProgram, IsWatchedAtItsVeryEnd)
{
    plctest::Machine machine(program);
    const std::int32_t last = program.blocks.back().lines.back().step;

    machine.Watch(last - 97, last);
    machine.Cycle();

    const auto& states = machine.States();
    ASSERT_EQ(states.size(), 98U);
    EXPECT_EQ(states[97].accumulator, std::nullopt) << "the end of the block";
    EXPECT_EQ(states[96].accumulator, static_cast<std::int32_t>(additions));
    EXPECT_EQ(states[95].accumulator, static_cast<std::int32_t>(additions));
    EXPECT_EQ(states[94].accumulator, 1);
    EXPECT_EQ(states[93].accumulator, static_cast<std::int32_t>(additions) - 1);
}

TEST_F(LargeProgram, HasADebugFileWithEveryBlock)
{
    const auto bytes = plc::DebugFileOf(program);

    ASSERT_TRUE(bytes);

    std::size_t listing = 0;
    for (const plc::Block& block : program.blocks) {
        for (const plc::Line& line : block.lines) {
            listing += line.text.size() + 1;
        }
    }
    EXPECT_EQ(bytes->size(), 12 + listing + 4 + blocks * 56);
}

TEST_F(LargeProgram, DoesNotRunDifferentlyWhileItIsWatched)
{
    plctest::Machine machine(program);

    for (std::int32_t first = 1; first < 120'000; first += 7'001) {
        machine.Watch(first, first + 97);
        ASSERT_FALSE(machine.Cycle());
    }

    EXPECT_EQ(machine.Read("MD0") % additions, 0U);
    EXPECT_GT(machine.Read("MD0"), additions);
}

} // namespace
