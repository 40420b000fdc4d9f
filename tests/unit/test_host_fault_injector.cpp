#include "fault_injector.h"
#include "projectfile.h"
#include "record.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace plchost {
namespace {

/// One read answer through a fault.
struct FaultTest : testing::Test
{
    RecordingSink sink;
    const CMD_DATA answer = PlcMakeReadAnswer(5, 17);

    bool Send(FaultInjector& faulty) { return faulty.Answer(AnswerKind::ReadVar, &answer); }

    static void Tick(FaultInjector& faulty, std::uint64_t times)
    {
        for (std::uint64_t i = 0; i < times; ++i) {
            faulty.Tick();
        }
    }
};

TEST_F(FaultTest, WithoutAFaultAnAnswerPassesAsItIs)
{
    FaultInjector honest(sink, std::nullopt);

    EXPECT_TRUE(Send(honest));

    ASSERT_EQ(sink.answers.size(), 1U);
    EXPECT_EQ(BytesOf(sink.answers[0].record), BytesOf(answer));
}

TEST_F(FaultTest, LateAnswerComesExactlyItsCyclesLate)
{
    FaultInjector late(sink, Fault::LateAnswer);

    Send(late);
    Tick(late, lateTicks - 1);
    EXPECT_TRUE(sink.answers.empty());
    Tick(late, 1);

    ASSERT_EQ(sink.answers.size(), 1U);
    EXPECT_EQ(sink.answers[0].record.key, 5);
    Tick(late, lateTicks);
    EXPECT_EQ(sink.answers.size(), 1U);
}

TEST_F(FaultTest, WrongKeyPrecedesTheRightOne)
{
    FaultInjector wrong(sink, Fault::WrongKey);

    Send(wrong);

    ASSERT_EQ(sink.answers.size(), 2U);
    EXPECT_NE(sink.answers[0].record.key, 5);
    EXPECT_EQ(sink.answers[1].record.key, 5);
}

TEST_F(FaultTest, WrongStepsPrecedeTheRightOnes)
{
    FaultInjector wrong(sink, Fault::WrongKey);
    const auto states = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, 1}});

    wrong.Answer(AnswerKind::ProgramState, &states);

    ASSERT_EQ(sink.answers.size(), 2U);
    EXPECT_EQ(AnsweredSteps(sink.answers[0].record).first, 4);
    EXPECT_EQ(AnsweredSteps(sink.answers[1].record).first, 3);
}

TEST_F(FaultTest, Length65535ClaimsMoreThanARecordHolds)
{
    FaultInjector wild(sink, Fault::Length65535);

    Send(wild);

    ASSERT_EQ(sink.answers.size(), 1U);
    EXPECT_EQ(sink.answers[0].record.length, 65535);
    EXPECT_EQ(PlcAnsweredValue(&sink.answers[0].record), 17);
}

TEST_F(FaultTest, NullAnswerPrecedesTheRightOne)
{
    FaultInjector null(sink, Fault::NullAnswer);

    EXPECT_TRUE(Send(null));

    ASSERT_EQ(sink.answers.size(), 2U);
    EXPECT_TRUE(sink.answers[0].null);
    EXPECT_FALSE(sink.answers[1].null);
}

TEST_F(FaultTest, AnswerAfterCloseIsRepeatedAlthoughNobodyTakesIt)
{
    FaultInjector stubborn(sink, Fault::AnswerAfterClose);

    Send(stubborn);
    sink.open = false;
    Tick(stubborn, repeatTicks);
    sink.open = true;
    Tick(stubborn, 2 * repeatTicks);

    EXPECT_EQ(sink.answers.size(), 3U);
}

TEST_F(FaultTest, FloodSendsEveryAnswerManyTimes)
{
    FaultInjector flood(sink, Fault::Flood);

    Send(flood);

    EXPECT_EQ(sink.answers.size(), std::size_t{floodCount});
}

TEST(NamedFaults, AreFoundByTheirNamesAndNoOther)
{
    std::set<Fault> found;
    for (const NamedFault& named : NamedFaults()) {
        ASSERT_EQ(FaultByName(named.name), named.fault);
        found.insert(named.fault);
    }

    EXPECT_EQ(found.size(), NamedFaults().size());
    EXPECT_FALSE(FaultByName("Flood"));
    EXPECT_FALSE(FaultByName(""));
}

TEST(NamedFaults, AreAllListedForIntegrators)
{
    std::ifstream file(ProjectFile("docs/integration.md"));
    const std::string page(std::istreambuf_iterator<char>(file), {});

    for (const NamedFault& named : NamedFaults()) {
        EXPECT_THAT(page, testing::HasSubstr(std::string("| `") + named.name + "` |"));
    }
}

} // namespace
} // namespace plchost
