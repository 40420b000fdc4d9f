#include "messages.h"
#include "remoteoperands.h"
#include "viewers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

struct ViewersTest : testing::Test
{
    Viewers viewers;
    const Viewers::Time start{1000h};
    const Viewer service{"service", "w1"};
    const Viewer other{"service", "w2"};
};

TEST_F(ViewersTest, OfOneUserMayHaveSeveralWindows)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start));
    EXPECT_TRUE(viewers.Watch(other, FlagBytes(3, 2), start));

    EXPECT_EQ(viewers.Count(), 2U);
    EXPECT_EQ(viewers.Operands().size(), 5U);
}

TEST_F(ViewersTest, WatchWhatTheyAskedForLast)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start));
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(1, 7), start));

    EXPECT_EQ(viewers.Operands(), FlagBytes(1, 7));
}

TEST_F(ViewersTest, ThatAskForNothingAreGone)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start));
    EXPECT_TRUE(viewers.Watch(service, {}, start));

    EXPECT_EQ(viewers.Count(), 0U);
}

TEST_F(ViewersTest, AreForgottenWhenTheirLeaseEnds)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start));
    EXPECT_TRUE(viewers.Watch(other, FlagBytes(1, 9), start));
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start + renewal));

    EXPECT_FALSE(viewers.Expire(start + lease - 1ms));
    EXPECT_TRUE(viewers.Expire(start + lease));

    EXPECT_EQ(viewers.Operands(), FlagBytes(3));
}

TEST_F(ViewersTest, AreThirtyTwoAtMost)
{
    for (std::size_t window = 0; window < mostViewers; ++window) {
        EXPECT_TRUE(viewers.Watch({"service", std::to_string(window)}, FlagBytes(1), start));
    }

    const auto refused = viewers.Watch(service, FlagBytes(1), start);

    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.Message(), HasSubstr("32 windows"));
    EXPECT_TRUE(viewers.Watch({"service", "0"}, FlagBytes(2), start));
}

TEST_F(ViewersTest, AreToldFiveHundredOperandsAtMost)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(400), start));
    EXPECT_TRUE(viewers.Watch(other, FlagBytes(200, 300), start));

    const auto refused = viewers.Watch({"service", "w3"}, {Operand("E0.0")}, start);

    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.Message(), HasSubstr("500 operands"));
    EXPECT_EQ(viewers.Count(), 2U);
}

TEST_F(ViewersTest, ShareTheFiveHundredWithWhatIsToldAlways)
{
    Viewers few(FlagBytes(490));

    EXPECT_TRUE(few.Watch(service, FlagBytes(10, 485), start));
    EXPECT_FALSE(few.Watch(service, FlagBytes(11, 490), start));
    EXPECT_EQ(few.Operands().size(), 490U);
}

TEST_F(ViewersTest, GetTheStepsWhenTheyAskLast)
{
    viewers.WatchSteps(service, plc::StepRange{1, 9}, start);
    viewers.WatchSteps(other, plc::StepRange{20, 29}, start);

    EXPECT_TRUE(viewers.StepsViewer() == other);
    EXPECT_EQ(viewers.Steps()->first, 20);

    viewers.WatchSteps(service, std::nullopt, start);
    EXPECT_TRUE(viewers.StepsViewer() == other);

    viewers.WatchSteps(other, std::nullopt, start);
    EXPECT_FALSE(viewers.StepsViewer());
    EXPECT_FALSE(viewers.Steps());
}

TEST_F(ViewersTest, LoseTheStepsWhenTheLeaseEnds)
{
    viewers.WatchSteps(service, plc::StepRange{1, 9}, start);

    EXPECT_FALSE(viewers.Expire(start + lease - 1ms));
    EXPECT_TRUE(viewers.Expire(start + lease));

    EXPECT_FALSE(viewers.StepsViewer());
}

TEST_F(ViewersTest, AreAllGoneAfterAClear)
{
    EXPECT_TRUE(viewers.Watch(service, FlagBytes(3), start));
    viewers.WatchSteps(service, plc::StepRange{1, 9}, start);

    viewers.Clear();

    EXPECT_EQ(viewers.Count(), 0U);
    EXPECT_THAT(viewers.Operands(), IsEmpty());
    EXPECT_FALSE(viewers.StepsViewer());
}

} // namespace
} // namespace plcremote
