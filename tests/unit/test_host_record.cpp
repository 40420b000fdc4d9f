#include "record.h"
#include "records.h"

#include <gmock/gmock.h>

namespace plchost {
namespace {

using testing::ElementsAre;

TEST(OperandOf, IsTheNameOfAReadOrAWriteRequest)
{
    EXPECT_EQ(OperandOf(PlcMakeReadRequest(5, "EB10")), "EB10");
    EXPECT_EQ(OperandOf(PlcMakeWriteRequest("MB3", -1)), "MB3");
}

TEST(RequestedSteps, AreTheRangeOfTheRequest)
{
    const auto steps = RequestedSteps(PlcMakePrgStateRequest(40, 59));

    ASSERT_TRUE(steps);
    EXPECT_EQ(steps->first, 40);
    EXPECT_EQ(steps->last, 59);
}

TEST(RequestedSteps, OfAStopAreNone)
{
    EXPECT_FALSE(RequestedSteps(PlcMakeStopRequest()));
}

TEST(RequestedSteps, OfTheVeryFirstStepAloneAreNoStop)
{
    EXPECT_TRUE(RequestedSteps(PlcMakePrgStateRequest(0, 0)));
}

TEST(IsAnswerable, OnlyARangeOfOneToNinetyEightSteps)
{
    EXPECT_TRUE(IsAnswerable({7, 7}));
    EXPECT_TRUE(IsAnswerable({1, 98}));
    EXPECT_FALSE(IsAnswerable({1, 99}));
    EXPECT_FALSE(IsAnswerable({INT32_MIN, INT32_MAX}));
    EXPECT_FALSE(IsAnswerable({7, 6}));
}

TEST(MakeProgramStateAnswer, SaysWhereAStepHasNoValue)
{
    const auto answer = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, std::nullopt}});

    EXPECT_THAT(
        BytesOf(answer),
        ElementsAre(
            // clang-format off
            0x10, 0x60, 24, 0, 2, 0,
            3, 0, 0, 0, 4, 0, 0, 0,
            1, 0,
            17, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F
            // clang-format on
            ));
}

TEST(MakeProgramStateAnswer, OfMoreStatesThanARecordHoldsIsFull)
{
    const std::vector<plc::StepState> states(200, {true, 1});

    const auto answer = MakeProgramStateAnswer({0, 97}, states);

    EXPECT_EQ(answer.length, 504);
    EXPECT_EQ(AnsweredStates(answer).size(), 98U);
}

TEST(AnsweredStates, AreThoseOfTheAnswer)
{
    const std::vector<plc::StepState> states{{true, 17}, {false, std::nullopt}, {false, -1}};

    EXPECT_EQ(AnsweredStates(MakeProgramStateAnswer({3, 5}, states)), states);
}

TEST(AnsweredStates, OfARangeThatTheLengthDoesNotCoverAreNone)
{
    auto answer = MakeProgramStateAnswer({3, 4}, {{true, 17}, {false, 1}});
    answer.length = 23;

    EXPECT_TRUE(AnsweredStates(answer).empty());
}

} // namespace
} // namespace plchost
