#include "record.h"
#include "test_host_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace plchost {
namespace {

TEST(ReadOperand, IsTheTextFromByteSix)
{
    EXPECT_EQ(
        ReadOperand(RecordOfBytes({0x0D, 0x60, 0x0B, 0, 5, 0, 'E', 'B', '1', '0', 0})), "EB10");
}

TEST(ReadOperand, WithoutZeroByteEndsWithTheRecord)
{
    CMD_DATA request{};
    std::fill(std::begin(request.payload), std::end(request.payload), std::uint8_t{'M'});

    EXPECT_EQ(ReadOperand(request), std::string(PLC_CMD_PAYLOAD_SIZE, 'M'));
}

TEST(WriteOperand, HasTheValueBeforeTheName)
{
    const auto write = WriteOperand(
        RecordOfBytes({0x0E, 0x60, 0x0E, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 'M', 'B', '3', 0}));

    EXPECT_EQ(write.operand, "MB3");
    EXPECT_EQ(write.value, -1);
}

TEST(DeleteArgument, IsSigned)
{
    EXPECT_EQ(DeleteArgument(RecordOfBytes({0x0F, 0x60, 8, 0, 7, 0, 0xFF, 0xFF})), -1);
}

TEST(RequestedSteps, AreTheRangeOfTheRequest)
{
    const auto steps = RequestedSteps(PlcMakePrgStateRequest(40, 59));

    ASSERT_TRUE(steps);
    EXPECT_EQ(steps->first, 40);
    EXPECT_EQ(steps->last, 59);
}

TEST(RequestedSteps, OfThreeZerosAreAStop)
{
    EXPECT_FALSE(RequestedSteps(PlcMakeStopRequest()));
}

TEST(RequestedSteps, OfTheVeryFirstStepAloneAreNoStop)
{
    EXPECT_TRUE(RequestedSteps(PlcMakePrgStateRequest(0, 0)));
}

TEST(MakeReadAnswer, HasTenBytes)
{
    EXPECT_EQ(
        BytesOf(MakeReadAnswer(5, -2)),
        (std::vector<std::uint8_t>{0x0D, 0x60, 10, 0, 5, 0, 0xFE, 0xFF, 0xFF, 0xFF}));
}

TEST(MakeProgramStateAnswer, HasTheStatesBeforeTheValues)
{
    const auto answer = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, PLC_NO_VALUE}});

    EXPECT_EQ(BytesOf(answer), (std::vector<std::uint8_t>{0x10, 0x60, 24,   0,   2, 0, 3,  0, 0, 0,
                                                          4,    0,    0,    0,   1, 0, 17, 0, 0, 0,
                                                          0xFF, 0xFF, 0xFF, 0x7F}));
}

TEST(MakeProgramStateAnswer, OfTheLargestRangeFitsTheRecord)
{
    const std::vector<StepState> states(maxStepsInAnswer, {true, 1});

    const auto answer = MakeProgramStateAnswer({0, maxStepsInAnswer - 1}, states);

    EXPECT_EQ(answer.length, 504);
    EXPECT_EQ(AnsweredStates(answer).size(), maxStepsInAnswer);
}

TEST(AnsweredStates, OfARangeThatTheLengthDoesNotCoverAreNone)
{
    auto answer = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, 1}});
    answer.length = 23;

    EXPECT_TRUE(AnsweredStates(answer).empty());
}

TEST(CountSteps, OfAReversedRangeIsZero)
{
    EXPECT_EQ(CountSteps({5, 4}), 0U);
}

} // namespace
} // namespace plchost
