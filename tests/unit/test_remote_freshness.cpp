#include "freshness.h"

#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;

struct LatenessTest : testing::Test
{
    /// A message that was sent when the machine had run so long, and came so much later.
    std::chrono::milliseconds Take(std::chrono::milliseconds running, std::chrono::milliseconds way)
    {
        return lateness.Take(running, machineStart + running + way);
    }

    Lateness lateness;
    /// On the viewer's clock, which the machine knows nothing of.
    const plclink::Clock::time_point machineStart{123456h};
};

TEST_F(LatenessTest, IsNoneForTheFirstAndForEveryQuickerMessage)
{
    EXPECT_EQ(Take(1000ms, 20ms), 0ms);
    EXPECT_EQ(Take(1100ms, 5ms), 0ms);
}

TEST_F(LatenessTest, IsWhatAMessageCameLaterThanTheQuickest)
{
    Take(1000ms, 5ms);
    Take(1100ms, 9ms);

    EXPECT_EQ(Take(1200ms, 45ms), 40ms);
    EXPECT_EQ(Take(1300ms, 5ms), 0ms);
}

TEST_F(LatenessTest, ShowsABrokerThatHoldsEverythingForFiveSeconds)
{
    Take(1000ms, 5ms);

    EXPECT_EQ(Take(1100ms, 5005ms), 5000ms);
    EXPECT_EQ(Take(30000ms, 5005ms), 5000ms);
}

TEST_F(LatenessTest, ForgetsTheQuickestAfterAMinute)
{
    Take(1000ms, 5ms);
    Take(2000ms, 25ms);

    EXPECT_EQ(Take(60000ms, 35ms), 30ms);
    EXPECT_EQ(Take(61500ms, 35ms), 10ms);
}

TEST(Sequence, CountsWhatIsMissing)
{
    Sequence sequence;

    EXPECT_EQ(sequence.Take(7), Sequence::Step::First);
    EXPECT_EQ(sequence.Take(8), Sequence::Step::Next);
    EXPECT_EQ(sequence.Take(11), Sequence::Step::Hole);
    EXPECT_EQ(sequence.LostCount(), 2U);
}

TEST(Sequence, KnowsWhatItHasSeenBefore)
{
    Sequence sequence;
    sequence.Take(7);
    sequence.Take(8);

    EXPECT_EQ(sequence.Take(8), Sequence::Step::Old);
    EXPECT_EQ(sequence.Take(7), Sequence::Step::Old);
    EXPECT_EQ(sequence.Take(9), Sequence::Step::Next);
    EXPECT_EQ(sequence.LostCount(), 0U);
}

TEST(Sequence, BeginsAnewWithASession)
{
    Sequence sequence;
    sequence.Take(7);
    sequence.Take(9);

    sequence.Restart();

    EXPECT_EQ(sequence.Take(0), Sequence::Step::First);
    EXPECT_EQ(sequence.LostCount(), 1U);
}

} // namespace
} // namespace plcremote
