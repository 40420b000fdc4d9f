#include "record.h"
#include "test_host_support.h"
#include "trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace plchost {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

TEST(DescribeRequest, NamesKeyAndOperandOfARead)
{
    EXPECT_EQ(DescribeRequest(PlcMakeReadRequest(5, "EB10")), "read    key 5  EB10");
}

TEST(DescribeRequest, ShowsAWrittenValueInBothBases)
{
    EXPECT_EQ(DescribeRequest(PlcMakeWriteRequest("MB3", -1)), "write   MB3 = -1 (0xFFFFFFFF)");
}

TEST(DescribeRequest, TellsStartAndReleaseApart)
{
    EXPECT_EQ(DescribeRequest(PlcMakeDeleteRequest(7, PLC_DELETE_ARG_START)), "start   key 7");
    EXPECT_EQ(DescribeRequest(PlcMakeDeleteRequest(7, PLC_DELETE_ARG_RELEASE)), "release key 7");
    EXPECT_EQ(DescribeRequest(PlcMakeDeleteRequest(7, 2)), "delete  key 7  unknown argument 2");
}

TEST(DescribeRequest, TellsStepsAndStopApart)
{
    EXPECT_EQ(DescribeRequest(PlcMakePrgStateRequest(40, 59)), "steps   40..59");
    EXPECT_EQ(DescribeRequest(PlcMakeStopRequest()), "steps   stop");
}

TEST(DescribeRequest, ShowsAnUnknownCommandWithItsHeader)
{
    EXPECT_EQ(
        DescribeRequest(RecordOfBytes({0x34, 0x12, 9, 0, 3, 0})),
        "unknown command 0x1234, length 9, key 3");
}

TEST(DescribeAnswer, ShowsKeyAndValue)
{
    const auto answer = PlcMakeReadAnswer(5, 17);

    EXPECT_EQ(DescribeAnswer(AnswerKind::ReadVar, &answer), "value   key 5  17 (0x00000011)");
}

TEST(DescribeAnswer, ShowsResultsAndTheValuesThatExist)
{
    const auto answer = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, std::nullopt}});

    EXPECT_EQ(DescribeAnswer(AnswerKind::ProgramState, &answer), "states  3..4  1:17 0");
}

TEST(DescribeAnswer, SurvivesNullAndAWildLength)
{
    auto wild = PlcMakeReadAnswer(5, 17);
    wild.length = 65535;

    EXPECT_EQ(DescribeAnswer(AnswerKind::ReadVar, nullptr), "value   null pointer");
    EXPECT_THAT(DescribeAnswer(AnswerKind::ReadVar, &wild), EndsWith("(length 65535)"));
}

TEST(DescribeAnswer, SurvivesARangeThatOverflows)
{
    const auto answer = MakeProgramStateAnswer({INT32_MIN, INT32_MAX}, {});

    EXPECT_THAT(
        DescribeAnswer(AnswerKind::ProgramState, &answer), HasSubstr("-2147483648..2147483647"));
}

TEST(Trace, EveryLineLeavesAtOnce)
{
    struct Buffer : std::stringbuf
    {
        int sync() override
        {
            left = str();
            return 0;
        }

        std::string left;
    } buffer;

    std::ostream out(&buffer);
    Trace trace(out);

    trace.Request(PlcMakeReadRequest(5, "EB10"));

    EXPECT_THAT(buffer.left, EndsWith("-> read    key 5  EB10\n"));
}

TEST(TracedAnswers, PassOnTheAnswerAndWhetherItWasTaken)
{
    std::ostringstream out;
    Trace trace(out);
    RecordingSink sink;
    TracedAnswers traced(sink, trace);
    const auto answer = PlcMakeReadAnswer(5, 17);

    EXPECT_TRUE(traced.Answer(AnswerKind::ReadVar, &answer));
    sink.open = false;
    EXPECT_FALSE(traced.Answer(AnswerKind::ReadVar, &answer));

    EXPECT_EQ(sink.answers.size(), 1U);
    EXPECT_THAT(out.str(), EndsWith("<- value   key 5  17 (0x00000011)  (not taken)\n"));
}

TEST(TracedRequests, PassOnTheRequest)
{
    struct : RequestHandler
    {
        void Request(const CMD_DATA& request) override { key = request.key; }

        int key = 0;
    } handler;

    std::ostringstream out;
    Trace trace(out);
    TracedRequests traced(handler, trace);

    traced.Request(PlcMakeReadRequest(5, "EB10"));

    EXPECT_EQ(handler.key, 5);
    EXPECT_THAT(out.str(), EndsWith("-> read    key 5  EB10\n"));
}

} // namespace
} // namespace plchost
