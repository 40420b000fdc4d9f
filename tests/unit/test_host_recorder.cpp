#include "messageof.h"
#include "record.h"
#include "recorder.h"
#include "tempdir.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

namespace plchost {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

struct RecorderTest : testing::Test
{
    Recording Read() const
    {
        const auto recording = ReadRecording(file);
        EXPECT_EQ(MessageOf(recording), "");
        return recording ? *recording : Recording{};
    }

    /// Records an answer, which passes on in any case. @return what the recorder then complains of.
    std::string ProblemOfAnAnswerTo(const char* unwritable)
    {
        Recorder recorder(unwritable, "listing");
        RecordedAnswers recorded(sink, &recorder);
        const CMD_DATA answer = PlcMakeReadAnswer(0, 5);
        EXPECT_TRUE(recorded.Answer(AnswerKind::ReadVar, &answer));
        return MessageOf(recorder.Check());
    }

    const TempDir dir;
    const std::string file = dir.File("machine.rec");
    RecordingSink sink;
};

TEST_F(RecorderTest, EveryEventIsInTheFileWhileItIsStillBeingMade)
{
    Recorder recorder(file, "listing");
    recorder.Request(PlcMakeReadRequest(0, "MW20"));
    const CMD_DATA answer = PlcMakeReadAnswer(0, 5);
    recorder.Answer(AnswerKind::ReadVar, &answer, true);

    const Recording recording = Read();

    EXPECT_TRUE(recorder.Check());
    EXPECT_EQ(recording.remark, "");
    EXPECT_EQ(recording.listing, "listing");
    EXPECT_THAT(WatchedOperands(recording), ElementsAre("MW20"));
    ASSERT_THAT(recording.events, SizeIs(2));
    EXPECT_EQ(recording.events[1].bytes, CountingBytes(&answer));
}

TEST_F(RecorderTest, NothingIsLeftOfAnOlderAndLongerRecording)
{
    Recorder(file, std::string(1000, 'x'));

    Recorder(file, "listing");

    const Recording recording = Read();
    EXPECT_EQ(recording.listing, "listing");
    EXPECT_EQ(recording.remark, "");
    EXPECT_THAT(recording.events, SizeIs(0));
}

TEST_F(RecorderTest, AnswersPassOnAndTheirFateIsRecorded)
{
    Recorder recorder(file, "listing");
    RecordedAnswers recorded(sink, &recorder);
    const CMD_DATA answer = MakeProgramStateAnswer({3, 4}, {{true, 1}, {false, 2}});

    EXPECT_TRUE(recorded.Answer(AnswerKind::ProgramState, &answer));
    EXPECT_FALSE(recorded.Answer(AnswerKind::ReadVar, nullptr));
    sink.open = false;
    EXPECT_FALSE(recorded.Answer(AnswerKind::ProgramState, &answer));

    const Recording recording = Read();
    ASSERT_THAT(recording.events, SizeIs(3));
    EXPECT_EQ(recording.events[0].kind, EventKind::ProgramStateAnswer);
    EXPECT_TRUE(recording.events[0].taken);
    EXPECT_EQ(recording.events[1].kind, EventKind::ReadAnswer);
    EXPECT_EQ(recording.events[1].bytes, "");
    EXPECT_FALSE(recording.events[2].taken);
    EXPECT_THAT(sink.answers, SizeIs(2));
}

TEST_F(RecorderTest, WithoutARecorderTheStationsOnlyPassOn)
{
    RecordedAnswers recorded(sink, nullptr);
    const CMD_DATA answer = PlcMakeReadAnswer(0, 5);

    EXPECT_TRUE(recorded.Answer(AnswerKind::ReadVar, &answer));
    EXPECT_THAT(sink.answers, SizeIs(1));
}

TEST_F(RecorderTest, ThreadsThatAnswerAtOnceLoseNothing)
{
    constexpr int threadCount = 4;
    constexpr int answersEach = 500;
    {
        Recorder recorder(file, "listing");
        std::vector<std::thread> threads;
        for (std::uint16_t key = 0; key < threadCount; ++key) {
            threads.emplace_back([&recorder, key] {
                for (int value = 0; value < answersEach; ++value) {
                    const CMD_DATA answer = PlcMakeReadAnswer(key, value);
                    recorder.Answer(AnswerKind::ReadVar, &answer, true);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    EXPECT_THAT(Read().events, SizeIs(threadCount * answersEach));
}

TEST_F(RecorderTest, AFileThatCannotBeMadeIsNamedAndEverythingGoesOn)
{
    EXPECT_THAT(
        ProblemOfAnAnswerTo("/proc/machine.rec"),
        AllOf(HasSubstr("\"/proc/machine.rec\""), HasSubstr("nothing is recorded")));
}

TEST_F(RecorderTest, AFullDiskIsNamedAndEverythingGoesOn)
{
    EXPECT_THAT(
        ProblemOfAnAnswerTo("/dev/full"),
        AllOf(HasSubstr("\"/dev/full\" ends early"), HasSubstr("space")));
}

} // namespace
} // namespace plchost
