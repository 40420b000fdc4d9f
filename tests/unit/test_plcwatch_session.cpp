#include "cycle_source.h"
#include "plcwatch_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace plcwatch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A program that does nothing.
class Idle : public plc::CyclicProgram
{
public:
    std::optional<plc::StopReason> RunCycle(plc::Image&, std::chrono::milliseconds) override
    {
        return std::nullopt;
    }

    bool Watch(std::optional<plc::StepRange>) override { return true; }

    const std::vector<plc::StepState>& WatchedStates() const override { return m_states; }

private:
    std::vector<plc::StepState> m_states;
};

/// A session with a PLC that works a cycle whenever the program waits, as far as the test says.
struct SessionTest : testing::Test
{
    static constexpr int interrupted = 130;

    Surroundings Around()
    {
        return {
            [this](const std::string& text) {
                printed += text;
                return isRead;
            },
            [this](const std::string& sentence) { told.push_back(sentence); },
            [this](std::chrono::milliseconds) -> std::optional<int> {
                if (cycles.empty()) {
                    return interrupted;
                }
                cycles.front()();
                cycles.pop_front();
                plc->AfterCycle(image, idle, ++cycle, plclink::Clock::now());
                return std::nullopt;
            },
            isTerminal,
            24};
    }

    Session Make()
    {
        auto made = std::make_unique<plclink::CycleSource>();
        plc = made.get();
        return Session(options, std::move(made), Around());
    }

    int Watch(const std::vector<std::string>& names)
    {
        std::vector<Variable> list;
        for (const std::string& name : names) {
            list.push_back(*ParseVariable(name, "D"));
        }
        auto session = Make();
        return session.Watch(list);
    }

    void Cycles(int count)
    {
        for (int i = 0; i < count; ++i) {
            cycles.push_back([] {});
        }
    }

    void CycleThatSets(const char* operand, std::uint32_t value)
    {
        cycles.push_back(
            [this, operand, value] { image.Write(plc::Image::CellOf(operand), value); });
    }

    /// The printed lines without their times.
    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = printed.find('\n', begin)) != std::string::npos;
             begin = end + 1) {
            const std::string line = printed.substr(begin, end - begin);
            lines.push_back(line.substr(line.find('\t') + 1));
        }
        return lines;
    }

    Options options;
    plc::Image image;
    Idle idle;
    std::uint64_t cycle = 0;
    std::deque<std::function<void()>> cycles;
    plclink::CycleSource* plc = nullptr;
    bool isRead = true;
    bool isTerminal = false;
    std::string printed;
    std::vector<std::string> told;
};

TEST_F(SessionTest, PrintsALineForEachChange)
{
    Cycles(2);
    CycleThatSets("MW20", 5);
    Cycles(1);

    EXPECT_EQ(Watch({"MW20", "EB1"}), interrupted);

    EXPECT_THAT(
        Lines(),
        ElementsAre(
            "\t\tconnecting",
            "MW 20\t?",
            "EB 1\t?",
            "\t\trunning",
            "MW 20\t0",
            "EB 1\t0",
            "MW 20\t5"));
}

TEST_F(SessionTest, EndsOnceEveryValueHasCome)
{
    options.once = true;
    Cycles(5);

    EXPECT_EQ(Watch({"MW20", "EB1"}), exitGood);

    EXPECT_THAT(Lines(), ElementsAre("\t\tconnecting", "\t\trunning", "MW 20\t0", "EB 1\t0"));
    EXPECT_EQ(cycles.size(), 4U);
}

TEST_F(SessionTest, EndsWhenNobodyReadsAnyMore)
{
    isRead = false;
    Cycles(5);

    EXPECT_EQ(Watch({"MW20"}), exitGood);

    EXPECT_EQ(cycles.size(), 5U);
}

TEST_F(SessionTest, EndsWhenItsTimeIsOverAndSaysWhetherTheMachineWasThere)
{
    options.limit = std::chrono::milliseconds{0};
    EXPECT_EQ(Watch({"MW20"}), exitNoLink);

    options.limit.reset();
    options.once = true;
    Cycles(1);
    EXPECT_EQ(Watch({"MW20"}), exitGood);
}

TEST_F(SessionTest, KeepsATableOnATerminal)
{
    isTerminal = true;
    Cycles(1);

    Watch({"MW20"});

    EXPECT_THAT(printed, HasSubstr("MW 20  ?"));
    EXPECT_THAT(printed, HasSubstr("\x1b[2A"));
    EXPECT_THAT(printed, HasSubstr("MW 20  0"));
}

TEST_F(SessionTest, PrintsLinesOnATerminalWhenAsked)
{
    isTerminal = true;
    options.plain = true;
    Cycles(1);

    Watch({"MW20"});

    EXPECT_THAT(printed, Not(HasSubstr("\x1b")));
}

TEST_F(SessionTest, PrintsObjectsWhenAsked)
{
    options.json = true;
    Cycles(1);

    Watch({"MW20"});

    EXPECT_THAT(printed, HasSubstr("\"operand\": \"MW 20\", \"value\": null, \"raw\": null"));
    EXPECT_THAT(printed, HasSubstr("\"operand\": \"MW 20\", \"value\": \"0\", \"raw\": 0"));
    EXPECT_THAT(printed, HasSubstr("\"link\": \"running\", \"reason\": \"\"}"));
}

TEST_F(SessionTest, ReadsOneValue)
{
    options.read = *ParseVariable("MW20", "H");
    CycleThatSets("MW20", 0x1F);

    EXPECT_EQ(Make().Read(), exitGood);

    EXPECT_EQ(printed, "001F\n");
}

TEST_F(SessionTest, EndsAtOnceWhenItIsToldTo)
{
    options.read = *ParseVariable("MW20", "D");

    EXPECT_EQ(Make().Read(), interrupted);
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(SessionTest, ConfirmsAWriteByReadingItBack)
{
    options.write = WriteOrder{*ParseVariable("MW20", "D"), 17};
    Cycles(3);

    EXPECT_EQ(Make().Write(), exitGood);

    EXPECT_EQ(image.Read(plc::Image::CellOf("MW20")), 17U);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(SessionTest, SaysThatAWriteIsNotConfirmed)
{
    options.write = WriteOrder{*ParseVariable("T5", "D"), 17};
    Cycles(3);

    EXPECT_EQ(Make().Write(), exitNotWritten);

    EXPECT_THAT(told, ElementsAre(HasSubstr("T5 does not take this value")));
}

/// A machine that knows no operand.
class Stranger : public plclink::CycleSource
{
public:
    base::Result<void> Check(const plc::Operand&) const override
    {
        return base::Failure{"not mine"};
    }
};

TEST_F(SessionTest, AnOperandThatTheMachineDoesNotKnowIsToldAndGivesItsStatus)
{
    auto made = std::make_unique<Stranger>();
    plc = made.get();
    options.once = true;
    options.read = *ParseVariable("MW20", "D");
    options.write = WriteOrder{*options.read, 1};
    Cycles(3);

    EXPECT_EQ(Session(options, std::move(made), Around()).Read(), exitUnknownOperand);
    EXPECT_EQ(Session(options, std::make_unique<Stranger>(), Around()).Write(), exitUnknownOperand);

    EXPECT_THAT(told, ElementsAre("MW 20: not mine", "not mine"));
}

} // namespace
} // namespace plcwatch
