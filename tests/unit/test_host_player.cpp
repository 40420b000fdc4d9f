#include "bridge.h"
#include "machine_link.h"
#include "player.h"
#include "record.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

/// A player of what a test has put together, and a debugger that asks for it.
struct PlayerTest : testing::Test
{
    void Records(std::chrono::microseconds time, const CMD_DATA& request)
    {
        recording.events.push_back({time, EventKind::Request, true, CountingBytes(&request)});
    }

    void Records(
        std::chrono::microseconds time, EventKind kind, const CMD_DATA& answer, bool taken = true)
    {
        recording.events.push_back({time, kind, taken, CountingBytes(&answer)});
    }

    /// MW20 under key 7 is 10 at one second and 20 at two.
    void RecordTwoValues()
    {
        Records(0s, PlcMakeReadRequest(7, "MW20"));
        Records(0s, PlcMakeDeleteRequest(7, PLC_DELETE_ARG_START));
        Records(1s, EventKind::ReadAnswer, PlcMakeReadAnswer(7, 10));
        Records(2s, EventKind::ReadAnswer, PlcMakeReadAnswer(7, 20));
    }

    /// The states of steps 10 to 12 at one second.
    void RecordStates()
    {
        Records(0s, PlcMakePrgStateRequest(10, 12));
        Records(
            1s,
            EventKind::ProgramStateAnswer,
            MakeProgramStateAnswer({10, 12}, {{true, 1}, {false, 2}, {true, std::nullopt}}));
    }

    Bridge& Play(double speed = 1)
    {
        bridge.reset();
        auto made = std::make_unique<Player>(recording, speed);
        player = made.get();
        link.emplace(std::move(made));
        link->Start();
        const Log note = [this](const std::string& message) { log.push_back(message); };
        bridge.emplace(sink, *link, MachineLog{note, note});
        player->Advance(start);
        return *bridge;
    }

    void Watch(std::uint16_t key, const char* operand)
    {
        bridge->Request(PlcMakeReadRequest(key, operand));
        bridge->Request(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
    }

    /// Values that have been given since the last look, with their keys.
    std::vector<std::pair<int, int>> Values()
    {
        std::vector<std::pair<int, int>> values;
        for (const RecordedAnswer& answer : sink.Take()) {
            values.emplace_back(answer.record.key, PlcAnsweredValue(&answer.record));
        }
        return values;
    }

    const Player::Clock::time_point start{};
    Recording recording;
    RecordingSink sink;
    std::vector<std::string> log;
    Player* player = nullptr; ///< Belongs to the link.
    std::optional<plclink::MachineLink> link;
    std::optional<Bridge> bridge;
};

TEST_F(PlayerTest, GivesEveryAnswerAtItsTimeUnderTheKeyOfToday)
{
    RecordTwoValues();
    Play();
    Watch(3, "MW20");

    player->Advance(start + 999ms);
    EXPECT_THAT(Values(), IsEmpty());
    player->Advance(start + 1s);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));
    player->Advance(start + 2s);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 20)));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(PlayerTest, GivesNoAnswerTwiceAndNoneAfterTheEnd)
{
    RecordTwoValues();
    Play();
    Watch(3, "MW20");
    player->Advance(start + 2s);
    EXPECT_THAT(Values(), SizeIs(2));

    player->Advance(start + 1h);

    EXPECT_THAT(Values(), IsEmpty());
    EXPECT_EQ(player->Position(), 2s);
    EXPECT_EQ(player->Length(), 2s);
}

TEST_F(PlayerTest, PlaysFasterAndSlower)
{
    RecordTwoValues();
    Play(10);
    Watch(3, "MW20");
    player->Advance(start + 100ms);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));

    Play(0.5);
    Watch(3, "MW20");
    player->Advance(start + 1999ms);
    EXPECT_THAT(Values(), IsEmpty());
    player->Advance(start + 2s);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));
}

TEST_F(PlayerTest, WhoAsksLaterGetsTheLastValueAtOnceAndOnce)
{
    RecordTwoValues();
    Play();
    player->Advance(start + 1s);

    Watch(3, "MW20");

    player->Advance(start + 1100ms);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));
    player->Advance(start + 1200ms);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(PlayerTest, AValueThatNobodyTookIsGivenAgain)
{
    RecordTwoValues();
    sink.open = false;
    Play();
    Watch(3, "MW20");
    player->Advance(start + 1s);
    sink.open = true;

    player->Advance(start + 1100ms);

    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));
}

TEST_F(PlayerTest, AnOperandThatIsWatchedTwiceIsAnsweredTwice)
{
    RecordTwoValues();
    Play();
    Watch(3, "MW20");
    Watch(4, "MW20");

    player->Advance(start + 1s);

    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10), Pair(4, 10)));
}

TEST_F(PlayerTest, AReleasedVariableIsAnsweredNoLonger)
{
    RecordTwoValues();
    Play();
    Watch(3, "MW20");
    player->Advance(start + 1s);
    Values();

    bridge->Request(PlcMakeDeleteRequest(3, PLC_DELETE_ARG_RELEASE));

    player->Advance(start + 2s);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(PlayerTest, ADebuggerThatIsGoneIsAnsweredNoLonger)
{
    RecordTwoValues();
    RecordStates();
    Play();
    Watch(3, "MW20");
    bridge->Request(PlcMakePrgStateRequest(10, 12));

    bridge->Forget();

    player->Advance(start + 2s);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(PlayerTest, TheTimeStandsInAPause)
{
    RecordTwoValues();
    Play();
    player->Advance(start + 1s);

    player->Pause();
    player->Advance(start + 1h);

    EXPECT_EQ(player->Position(), 1s);
    player->Advance(start + 1h + 500ms);
    EXPECT_EQ(player->Position(), 1500ms);
}

TEST_F(PlayerTest, ARecordedKeyStandsForItsLatestOperand)
{
    Records(0s, PlcMakeReadRequest(7, "MW20"));
    Records(1s, PlcMakeDeleteRequest(7, PLC_DELETE_ARG_RELEASE));
    Records(1s, EventKind::ReadAnswer, PlcMakeReadAnswer(7, 10));
    Records(2s, PlcMakeReadRequest(7, "EB3"));
    Records(2s, EventKind::ReadAnswer, PlcMakeReadAnswer(7, 20));
    Play();
    Watch(0, "MW20");
    Watch(1, "EB3");

    player->Advance(start + 2s);

    EXPECT_THAT(Values(), ElementsAre(Pair(1, 20)));
}

TEST_F(PlayerTest, WhatTheRecordedDebuggerDidNotTakeIsNotGiven)
{
    Records(0s, PlcMakeReadRequest(7, "MW20"));
    Records(0s, EventKind::ReadAnswer, PlcMakeReadAnswer(7, 10), false);
    recording.events.push_back({0s, EventKind::ReadAnswer, true, ""});
    Play();
    Watch(3, "MW20");

    player->Advance(start + 1s);

    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(PlayerTest, TellsWhatItCannotServe)
{
    RecordTwoValues();
    Play();
    Watch(3, "DB10.DBW4");
    bridge->Request(PlcMakeWriteRequest("MW20", 1));
    bridge->Request(RecordOfBytes({0x34, 0x12}));

    EXPECT_THAT(
        log,
        ElementsAre(
            HasSubstr("\"DB10.DBW4\" is not in the recording"),
            HasSubstr("takes no values"),
            HasSubstr("unknown command word")));
}

TEST_F(PlayerTest, StatesGoToTheStepsThatAreAskedForNow)
{
    RecordStates();
    Play().Request(PlcMakePrgStateRequest(11, 12));

    player->Advance(start + 1s);

    const auto answers = sink.Take();
    ASSERT_THAT(answers, SizeIs(1));
    EXPECT_EQ(AnsweredSteps(answers[0].record).first, 11);
    const auto states = AnsweredStates(answers[0].record);
    ASSERT_THAT(states, SizeIs(2));
    EXPECT_FALSE(states[0].logicResult);
    EXPECT_EQ(states[0].accumulator, 2);
    EXPECT_TRUE(states[1].logicResult);
}

TEST_F(PlayerTest, WhoAsksForStepsLaterGetsTheirLastStatesAtOnce)
{
    RecordStates();
    Play();
    player->Advance(start + 1s);

    bridge->Request(PlcMakePrgStateRequest(10, 12));
    player->Advance(start + 1s);
    player->Advance(start + 1s);

    EXPECT_THAT(sink.Take(), SizeIs(1));
}

TEST_F(PlayerTest, StepsOfWhichOneWasNeverRecordedAreNotAnswered)
{
    RecordStates();
    Play().Request(PlcMakePrgStateRequest(9, 12));

    player->Advance(start + 1s);

    EXPECT_THAT(sink.Take(), IsEmpty());
}

TEST_F(PlayerTest, StatesThatTheRecordedDebuggerHadNotAskedForDoNotCount)
{
    Records(0s, PlcMakePrgStateRequest(10, 10));
    Records(0s, EventKind::ProgramStateAnswer, MakeProgramStateAnswer({11, 11}, {{true, 1}}));
    Play().Request(PlcMakePrgStateRequest(11, 11));

    player->Advance(start + 1s);

    EXPECT_THAT(sink.Take(), IsEmpty());
}

TEST_F(PlayerTest, RewoundItPlaysFromTheBeginning)
{
    RecordTwoValues();
    Play();
    Watch(3, "MW20");
    player->Advance(start + 2s);
    Values();

    player->Rewind();

    player->Advance(start + 1h);
    EXPECT_EQ(player->Position(), 0s);
    player->Advance(start + 1h + 1s);
    EXPECT_THAT(Values(), ElementsAre(Pair(3, 10)));
}

TEST_F(PlayerTest, RewoundItKnowsNoValueOfLater)
{
    RecordTwoValues();
    Play();
    player->Advance(start + 2s);

    player->Rewind();

    Watch(3, "MW20");
    player->Advance(start + 1h);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(PlayerTest, ARecordingWithoutEventsHasNothingToSay)
{
    Play();
    Watch(3, "MW20");

    player->Advance(start + 1s);

    EXPECT_THAT(Values(), IsEmpty());
    EXPECT_EQ(player->Length(), 0s);
}

} // namespace
} // namespace plchost
