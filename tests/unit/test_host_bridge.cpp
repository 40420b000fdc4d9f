#include "bridge.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A program whose states the test sets.
class ScriptedProgram : public plc::CyclicProgram
{
public:
    std::optional<plc::StopReason> RunCycle(plc::Image&, std::chrono::milliseconds) override
    {
        return std::nullopt;
    }

    bool Watch(std::optional<plc::StepRange> range) override
    {
        watched = range;
        ++watches;
        return true;
    }

    const std::vector<plc::StepState>& WatchedStates() const override { return states; }

    std::optional<plc::StepRange> watched;
    int watches = 0;
    std::vector<plc::StepState> states;
};

/// A bridge between a recording sink and an image, with a clock of its own.
struct BridgeTest : testing::Test
{
    RecordingSink sink;
    std::vector<std::string> log;
    Bridge bridge{sink, [this](const std::string& message) { log.push_back(message); }};
    plc::Image image;
    ScriptedProgram program;
    std::uint64_t cycle = 0;
    Bridge::Clock::time_point now;

    void Cycle(std::chrono::milliseconds elapsed = 10ms)
    {
        now += elapsed;
        bridge.AfterCycle(image, program, ++cycle, now);
    }

    void StandStill(std::chrono::milliseconds elapsed = 10ms)
    {
        now += elapsed;
        bridge.AfterCycle(image, program, cycle, now);
    }

    void Watch(std::uint16_t key, const std::string& operand)
    {
        bridge.Request(PlcMakeReadRequest(key, operand.c_str()));
        bridge.Request(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
    }

    void Set(const char* operand, std::uint32_t value)
    {
        image.Write(plc::Image::CellOf(operand), value);
    }

    std::uint32_t Get(const char* operand) const { return image.Read(plc::Image::CellOf(operand)); }

    /// The values answered since the last call, as "key=value".
    std::vector<std::string> Values()
    {
        std::vector<std::string> values;
        for (const RecordedAnswer& answer : sink.Take()) {
            EXPECT_EQ(answer.kind, AnswerKind::ReadVar);
            values.push_back(
                std::to_string(answer.record.key) + '=' +
                std::to_string(PlcAnsweredValue(&answer.record)));
        }
        return values;
    }
};

TEST_F(BridgeTest, AReadIsAnsweredAfterTheNextCycle)
{
    Set("EB10", 17);

    Watch(5, "EB10");
    EXPECT_THAT(Values(), IsEmpty());
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=17"));
}

TEST_F(BridgeTest, AnUnchangedValueIsAnsweredOnceASecond)
{
    Watch(5, "EB10");
    Cycle();
    Values();

    Cycle(refreshTime - 1ms);
    EXPECT_THAT(Values(), IsEmpty());
    Cycle(1ms);
    EXPECT_THAT(Values(), ElementsAre("5=0"));
    Cycle(refreshTime - 1ms);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(BridgeTest, AChangedValueIsAnsweredAfterItsCycle)
{
    Watch(5, "EB10");
    Cycle();
    Values();

    Set("EB10", 1);
    Cycle();
    EXPECT_THAT(Values(), ElementsAre("5=1"));
    Cycle();
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(BridgeTest, AReadThatIsNeverStartedIsAnsweredOnce)
{
    bridge.Request(PlcMakeReadRequest(5, "EB10"));
    Cycle();
    Set("EB10", 1);
    Cycle(refreshTime);

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, AReleasedVariableIsNotAnsweredAnyMore)
{
    Watch(5, "EB10");
    Watch(6, "EB11");
    Cycle();
    Values();

    bridge.Request(PlcMakeDeleteRequest(5, PLC_DELETE_ARG_RELEASE));
    Set("EB10", 1);
    Set("EB11", 1);
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("6=1"));
}

TEST_F(BridgeTest, AReleaseOfAnUnknownKeyChangesNothing)
{
    Watch(5, "EB10");

    bridge.Request(PlcMakeDeleteRequest(9, PLC_DELETE_ARG_RELEASE));
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, AKeyThatComesAgainStandsForTheNewOperand)
{
    Set("EB10", 1);
    Set("MW20", 2);
    Watch(5, "EB10");
    Watch(5, "MW20");
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=2"));
}

TEST_F(BridgeTest, TwoKeysForOneOperandAreBothAnswered)
{
    Watch(5, "EB10");
    Watch(6, "EB10");
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0", "6=0"));
}

TEST_F(BridgeTest, AValueThatNobodyTookIsAnsweredAgain)
{
    sink.open = false;
    Watch(5, "EB10");
    Cycle();
    sink.open = true;
    Cycle();
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, ValuesAreAnsweredAlsoWhileThePlcStands)
{
    Watch(5, "EB10");
    StandStill();
    Set("EB10", 1);
    StandStill();

    EXPECT_THAT(Values(), ElementsAre("5=0", "5=1"));
}

TEST_F(BridgeTest, EveryAreaAndWidthIsServed)
{
    Set("E0.7", 1);
    Set("AB63", 200);
    Set("MW510", 0xFFFE);
    Set("DB10.DBD100", 0x80000000);
    Set("DB1.DBX10.3", 1);
    image.TimerAt(5).Drive(plc::TimerKind::Pulse, true, 300);
    image.CounterAt(12).SetValue(7);

    Watch(0, "E0.7");
    Watch(1, "AB63");
    Watch(2, "MW510");
    Watch(3, "DB10.DBD100");
    Watch(4, "DB1.DBX10.3");
    Watch(5, "T5");
    Watch(6, "Z12");
    Cycle();

    EXPECT_THAT(
        Values(), ElementsAre("0=1", "1=200", "2=65534", "3=-2147483648", "4=1", "5=300", "6=7"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(BridgeTest, AnOperandThatDoesNotExistIsLoggedAndAnsweredByNothing)
{
    Watch(5, "DB5.DBW2");
    Watch(6, "");
    bridge.Request(PlcMakeWriteRequest("MB512", 1));
    Cycle();

    EXPECT_THAT(Values(), IsEmpty());
    EXPECT_THAT(
        log, ElementsAre(HasSubstr("\"DB5.DBW2\""), HasSubstr("\"\""), HasSubstr("\"MB512\"")));
}

TEST_F(BridgeTest, AWriteArrivesBetweenTwoCyclesAndIsAnsweredAtOnce)
{
    Watch(5, "MB3");
    Cycle();
    Values();

    bridge.Request(PlcMakeWriteRequest("MB3", -1));
    EXPECT_EQ(Get("MB3"), 0U);
    Cycle();

    EXPECT_EQ(Get("MB3"), 0xFFU);
    EXPECT_THAT(Values(), ElementsAre("5=255"));
}

TEST_F(BridgeTest, AWriteIsDoneOnce)
{
    bridge.Request(PlcMakeWriteRequest("MW4", 77));
    Cycle();
    Set("MW4", 1);
    Cycle();

    EXPECT_EQ(Get("MW4"), 1U);
}

TEST_F(BridgeTest, WritesAreDoneInTheirOrder)
{
    bridge.Request(PlcMakeWriteRequest("MW4", 1));
    bridge.Request(PlcMakeWriteRequest("MB5", 2));
    bridge.Request(PlcMakeWriteRequest("M5.7", 1));
    Cycle();

    EXPECT_EQ(Get("MW4"), 0x82U);
}

TEST_F(BridgeTest, AnUnknownCommandIsLogged)
{
    bridge.Request(RecordOfBytes({0x34, 0x12, 6, 0, 0, 0}));

    EXPECT_THAT(log, ElementsAre(HasSubstr("unknown command")));
}

TEST_F(BridgeTest, ForgottenSubscriptionsAreNotAnsweredButWritesAreDone)
{
    Watch(5, "MB3");
    bridge.Request(PlcMakePrgStateRequest(1, 2));
    bridge.Request(PlcMakeWriteRequest("MB3", 9));

    bridge.Forget();
    Cycle();
    Cycle();

    EXPECT_TRUE(sink.Take().empty());
    EXPECT_EQ(Get("MB3"), 9U);
    EXPECT_FALSE(program.watched);
}

/// A bridge with a subscription of steps 3 and 4.
struct StepsTest : BridgeTest
{
    StepsTest()
    {
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

TEST_F(StepsTest, UnchangedAreAnsweredEveryTwentiethCycle)
{
    Cycle();
    CountAnswers();

    for (std::uint64_t i = 1; i < stateRefreshCycles; ++i) {
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
    for (std::uint64_t i = 1; i < stateCyclesApart; ++i) {
        Cycle();
    }
    EXPECT_EQ(CountAnswers(), 0U);
    Cycle();

    const auto answers = sink.Take();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(AnsweredStates(answers[0].record).at(0).accumulator, 18);
}

TEST_F(StepsTest, AreNotAnsweredWhileThePlcStands)
{
    Cycle();
    CountAnswers();

    program.states[0].accumulator = 18;
    for (std::uint64_t i = 0; i < 2 * stateRefreshCycles; ++i) {
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
    for (std::uint64_t i = 0; i < 2 * stateRefreshCycles; ++i) {
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

TEST_F(BridgeTest, RequestsAndCyclesMayRunAtTheSameTime)
{
    std::atomic<bool> done{false};
    program.states = {{true, 17}};
    std::thread plc([&] {
        while (!done) {
            Cycle();
        }
    });

    for (int i = 0; i < 200; ++i) {
        Watch(1, "MB3");
        bridge.Request(PlcMakeWriteRequest("MB3", i));
        bridge.Request(PlcMakePrgStateRequest(1, 1));
        bridge.Request(PlcMakeDeleteRequest(1, PLC_DELETE_ARG_RELEASE));
    }
    bridge.Request(PlcMakeStopRequest());
    done = true;
    plc.join();
    sink.Take();
    Cycle();

    EXPECT_TRUE(sink.Take().empty());
    EXPECT_EQ(Get("MB3"), 199U);
}

} // namespace
} // namespace plchost
