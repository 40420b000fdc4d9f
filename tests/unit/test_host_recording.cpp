#include "messageof.h"
#include "record.h"
#include "recording.h"
#include "tempdir.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::string Bytes(const CMD_DATA& record)
{
    return CountingBytes(&record);
}

/// A recording with a listing and these events.
std::string FileOf(const std::vector<RecordedEvent>& events)
{
    std::string file =
        EncodeRecordingHead() + EncodeEvent({0us, EventKind::Listing, true, "listing"});
    for (const RecordedEvent& event : events) {
        file += EncodeEvent(event);
    }
    return file;
}

std::string ProblemOf(const std::string& file)
{
    return MessageOf(DecodeRecording(file));
}

Recording Decoded(const std::string& file)
{
    EXPECT_EQ(ProblemOf(file), "");
    return *DecodeRecording(file);
}

const std::vector<RecordedEvent>& TwoEvents()
{
    static const std::vector<RecordedEvent> events{
        {1500us, EventKind::Request, true, Bytes(PlcMakeReadRequest(3, "MW20"))},
        {2s, EventKind::ReadAnswer, false, Bytes(PlcMakeReadAnswer(3, -2))}};
    return events;
}

TEST(EncodeEvent, WritesFixedWidthsWithTheLowByteFirst)
{
    const std::string bytes = EncodeEvent({258us, EventKind::ReadAnswer, true, "abcdef"});

    EXPECT_EQ(bytes, std::string("\x06\0\0\0\x03\x01\0\0\x02\x01\0\0\0\0\0\0", 16) + "abcdef");
}

TEST(EncodeRecordingHead, NamesFormatAndVersion)
{
    EXPECT_EQ(EncodeRecordingHead(), std::string("PLCDBREC\x01\0\0\0", 12));
}

TEST(DecodeRecording, GivesBackWhatWasEncoded)
{
    const Recording recording = Decoded(FileOf(TwoEvents()));

    EXPECT_EQ(recording.listing, "listing");
    EXPECT_EQ(recording.remark, "");
    ASSERT_EQ(recording.events.size(), 2U);
    EXPECT_EQ(recording.events[0].time, 1500us);
    EXPECT_EQ(recording.events[0].kind, EventKind::Request);
    EXPECT_TRUE(recording.events[0].taken);
    EXPECT_EQ(recording.events[0].bytes, TwoEvents()[0].bytes);
    EXPECT_EQ(recording.events[1].kind, EventKind::ReadAnswer);
    EXPECT_FALSE(recording.events[1].taken);
}

TEST(DecodeRecording, KeepsEverythingBeforeATornEvent)
{
    const std::string whole = FileOf(TwoEvents());
    const std::size_t second = FileOf({TwoEvents()[0]}).size();

    for (std::size_t size = second + 1; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        const Recording recording = Decoded(whole.substr(0, size));

        EXPECT_EQ(recording.events.size(), 1U);
        EXPECT_THAT(recording.remark, HasSubstr("torn at byte " + std::to_string(second)));
    }
}

TEST(DecodeRecording, RefusesEveryFileThatEndsBeforeTheFirstEvent)
{
    const std::string first = FileOf({});

    for (std::size_t size = 0; size < first.size(); ++size) {
        EXPECT_NE(ProblemOf(first.substr(0, size)), "") << size;
    }
    EXPECT_THAT(ProblemOf(first.substr(0, 20)), HasSubstr("torn before its first record"));
}

TEST(DecodeRecording, RefusesAnotherFile)
{
    EXPECT_THAT(ProblemOf("MW20/D\nEB3/H\n"), HasSubstr("is no recording"));
    EXPECT_THAT(ProblemOf(""), HasSubstr("is no recording"));
}

TEST(DecodeRecording, RefusesAnotherVersionAndNamesBoth)
{
    std::string file = FileOf(TwoEvents());
    file[8] = 2;

    EXPECT_THAT(ProblemOf(file), AllOf(HasSubstr("version 2"), HasSubstr("version 1")));
}

TEST(DecodeRecording, RefusesWhatNoRecorderWrites)
{
    const std::string before = FileOf({TwoEvents()[1]});
    const std::string place = "damaged at byte " + std::to_string(before.size());
    const std::string record = TwoEvents()[0].bytes;
    const auto problem = [&](std::chrono::microseconds time, int kind, const std::string& bytes) {
        return ProblemOf(before + EncodeEvent({time, static_cast<EventKind>(kind), true, bytes}));
    };

    EXPECT_EQ(problem(2s, 2, record), "");
    EXPECT_THAT(problem(1s, 2, record), HasSubstr(place)) << "time runs backwards";
    EXPECT_THAT(problem(longestRecording + 1us, 2, record), HasSubstr(place));
    EXPECT_THAT(problem(-1us, 2, record), HasSubstr(place));
    EXPECT_THAT(problem(2s, 0, ""), HasSubstr(place)) << "unknown kind";
    EXPECT_THAT(problem(2s, 5, record), HasSubstr(place)) << "unknown kind";
    EXPECT_THAT(problem(2s, 1, record), HasSubstr(place)) << "a second listing";
    EXPECT_THAT(problem(2s, 2, ""), HasSubstr(place)) << "a request without a record";
    EXPECT_THAT(problem(2s, 3, "12345"), HasSubstr(place)) << "shorter than a record's head";
    EXPECT_THAT(problem(2s, 3, std::string(507, 'x')), HasSubstr(place));
}

TEST(DecodeRecording, TakesAWildLengthForDamageAndNotForATornEnd)
{
    std::string file = FileOf(TwoEvents());
    const std::size_t second = FileOf({TwoEvents()[0]}).size();
    file[second + 3] = '\x7F';

    EXPECT_THAT(ProblemOf(file), HasSubstr("damaged at byte " + std::to_string(second)));
}

TEST(ReadRecording, NamesTheFileThatItCannotRead)
{
    const TempDir dir;
    const auto missing = ReadRecording(dir.File("none"));
    const auto other = ReadRecording(dir.Write("list.plc", "MW20/D\n"));

    EXPECT_THAT(MessageOf(missing), HasSubstr(dir.File("none")));
    EXPECT_THAT(MessageOf(other), HasSubstr("\"" + dir.File("list.plc") + "\" is no"));
}

TEST(CountingBytes, AreThoseThatTheLengthWordCovers)
{
    CMD_DATA record = PlcMakeReadAnswer(3, 5);
    EXPECT_EQ(CountingBytes(&record).size(), 10U);
    record.length = 65535;
    EXPECT_EQ(CountingBytes(&record).size(), 506U);
    record.length = 0;
    EXPECT_EQ(CountingBytes(&record).size(), 6U);
    EXPECT_EQ(CountingBytes(nullptr), "");
}

TEST(RecordOf, IsTheRecordAgain)
{
    const CMD_DATA record = PlcMakeReadAnswer(3, 5);

    const auto again = RecordOf(CountingBytes(&record));

    ASSERT_TRUE(again);
    EXPECT_EQ(BytesOf(*again), BytesOf(record));
    EXPECT_FALSE(RecordOf(""));
}

TEST(WatchedOperands, StandInTheOrderOfTheirFirstRequest)
{
    Recording recording;
    for (const CMD_DATA& request :
         {PlcMakeReadRequest(0, "MW20"),
          PlcMakeDeleteRequest(0, PLC_DELETE_ARG_START),
          PlcMakeReadRequest(1, "EB3"),
          PlcMakeReadRequest(2, "MW20")}) {
        recording.events.push_back({0us, EventKind::Request, true, Bytes(request)});
    }
    recording.events.push_back({0us, EventKind::ReadAnswer, true, Bytes(PlcMakeReadAnswer(1, 2))});

    EXPECT_THAT(WatchedOperands(recording), ElementsAre("MW20", "EB3"));
}

} // namespace
} // namespace plchost
