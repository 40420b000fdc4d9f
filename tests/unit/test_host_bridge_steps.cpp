#include "test_host_bridge.h"

namespace plchost {
namespace {

using namespace std::chrono_literals;
using plclink::stateRefreshTime;
using plclink::stateTimeApart;

/// A bridge with a subscription of steps 3 and 4.
struct StepsTest : BridgeTest
{
    void SetUp() override
    {
        BridgeTest::SetUp();
        program.states = {{true, 17}, {false, std::nullopt}};
        bridge.Request(PlcMakePrgStateRequest(3, 4));
        Cycle();
    }

    std::size_t CountAnswers() { return sink.Take().size(); }
};

TEST_F(StepsTest, AreHandedToTheProgram)
{
    ASSERT_TRUE(program.watched);
    EXPECT_EQ(program.watched->first, 3);
    EXPECT_EQ(program.watched->last, 4);
    EXPECT_EQ(program.watches, 1);
}

TEST_F(StepsTest, AreAnsweredAfterTheFirstCycleThatRecordsThem)
{
    EXPECT_EQ(CountAnswers(), 0U);
    Cycle();

    const auto answers = sink.Take();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].kind, AnswerKind::ProgramState);
    EXPECT_EQ(AnsweredSteps(answers[0].record).first, 3);
    EXPECT_EQ(AnsweredSteps(answers[0].record).last, 4);
    const auto states = AnsweredStates(answers[0].record);
    ASSERT_EQ(states.size(), 2U);
    EXPECT_TRUE(states[0].logicResult);
    EXPECT_EQ(states[0].accumulator, 17);
    EXPECT_FALSE(states[1].logicResult);
    EXPECT_EQ(states[1].accumulator, std::nullopt);
}

TEST_F(StepsTest, UnchangedAreAnsweredAgainAfterTheirTime)
{
    Cycle();
    CountAnswers();

    for (auto time = cycleTime; time < stateRefreshTime; time += cycleTime) {
        Cycle();
    }
    EXPECT_EQ(CountAnswers(), 0U);
    Cycle();
    EXPECT_EQ(CountAnswers(), 1U);
}

TEST_F(StepsTest, ChangedAreAnsweredSoonerButNotInEveryCycle)
{
    Cycle();
    CountAnswers();

    program.states[0].accumulator = 18;
    for (auto time = cycleTime; time < stateTimeApart; time += cycleTime) {
        Cycle();
    }
    EXPECT_EQ(CountAnswers(), 0U);
    Cycle();

    const auto answers = sink.Take();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(AnsweredStates(answers[0].record).at(0).accumulator, 18);
}

TEST_F(StepsTest, ThatChangeAreAnsweredAtTheSamePaceWhenNoCycleIsQuiteInTime)
{
    Cycle();
    CountAnswers();

    for (int i = 0; i < 20; ++i) {
        ++*program.states[0].accumulator;
        Cycle(i % 2 == 0 ? 9ms : 11ms);
    }

    EXPECT_EQ(CountAnswers(), 200ms / stateTimeApart);
}

TEST_F(StepsTest, AreAnsweredInEveryLongCycle)
{
    Cycle(500ms);
    CountAnswers();

    for (int i = 0; i < 3; ++i) {
        Cycle(500ms);
        EXPECT_EQ(CountAnswers(), 1U);
    }
}

TEST_F(StepsTest, OfAQuickCycleAreAnsweredNoMoreOften)
{
    Cycle(1ms);
    CountAnswers();

    for (int i = 0; i < 200; ++i) {
        ++*program.states[0].accumulator;
        Cycle(1ms);
    }

    EXPECT_EQ(CountAnswers(), 200ms / stateTimeApart);
}

TEST_F(StepsTest, AreNotAnsweredWhileThePlcStands)
{
    Cycle();
    CountAnswers();

    program.states[0].accumulator = 18;
    for (auto time = cycleTime; time < 2 * stateRefreshTime; time += cycleTime) {
        StandStill();
    }

    EXPECT_EQ(CountAnswers(), 0U);
}

TEST_F(StepsTest, ThatNobodyTookAreAnsweredAgain)
{
    sink.open = false;
    Cycle();
    sink.open = true;
    Cycle();
    Cycle();

    EXPECT_EQ(CountAnswers(), 1U);
}

TEST_F(StepsTest, EndWithAStop)
{
    Cycle();
    CountAnswers();

    bridge.Request(PlcMakeStopRequest());
    program.states[0].accumulator = 18;
    for (auto time = cycleTime; time < 2 * stateRefreshTime; time += cycleTime) {
        Cycle();
    }

    EXPECT_EQ(CountAnswers(), 0U);
    EXPECT_FALSE(program.watched);
}

TEST_F(StepsTest, AreReplacedByANewRange)
{
    bridge.Request(PlcMakePrgStateRequest(10, 10));
    program.states = {{true, std::nullopt}};
    Cycle();
    Cycle();

    const auto answers = sink.Take();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(AnsweredSteps(answers[0].record).first, 10);
    EXPECT_EQ(program.watched->first, 10);
}

TEST_F(StepsTest, ThatNoAnswerCanHoldAreRefused)
{
    bridge.Request(PlcMakePrgStateRequest(1, PLC_MAX_STEPS + 1));
    bridge.Request(PlcMakePrgStateRequest(4, 3));
    Cycle();
    Cycle();

    EXPECT_EQ(CountAnswers(), 0U);
    EXPECT_FALSE(program.watched);
    EXPECT_EQ(log.size(), 2U);
}

} // namespace
} // namespace plchost
