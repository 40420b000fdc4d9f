#include "received_values.h"
#include "remoteoperands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const plclink::WatchList watched{Operand("MW20"), Operand("MW22")};

ReceivedValues::Time At(milliseconds time)
{
    return ReceivedValues::Time(1h + time);
}

/// A message of the session "a" that tells MW20 and MW22.
ValuesMessage Whole(std::uint64_t sequence, milliseconds running, std::uint32_t value)
{
    return {
        "a",
        sequence,
        running,
        true,
        {{Operand("MW20"), value, ""}, {Operand("MW22"), value, ""}},
        {}};
}

/// One that tells MW22 alone.
ValuesMessage Changed(std::uint64_t sequence, milliseconds running, std::uint32_t value)
{
    return {"a", sequence, running, false, {{Operand("MW22"), value, ""}}, {}};
}

/// Value and age at this time of each place that is told.
std::vector<std::pair<std::uint32_t, milliseconds>>
Told(const ReceivedValues& values, ReceivedValues::Time now)
{
    std::vector<std::pair<std::uint32_t, milliseconds>> told;
    for (const auto& [place, reading] : values.Readings(watched)) {
        told.emplace_back(
            reading.value, std::chrono::duration_cast<milliseconds>(now - reading.taken));
    }
    return told;
}

TEST(ReceivedValues, EachMessageTellsHowOldAllOperandsAreChangedOrNot)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(1, 1000ms, 5), At(0ms)));
    ValuesMessage next = Changed(2, 1100ms, 6);
    next.ages = {{Operand("MW20"), 2300ms}};

    ASSERT_TRUE(values.Take(next, At(100ms)));

    EXPECT_THAT(Told(values, At(100ms)), ElementsAre(Pair(5, 2300ms), Pair(6, 0ms)));
}

TEST(ReceivedValues, AMessageThatCameLaterThanTheQuickestIsSoMuchOlder)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(1, 1000ms, 5), At(0ms)));

    ASSERT_TRUE(values.Take(Whole(2, 1100ms, 6), At(5100ms)));

    EXPECT_EQ(values.Late(), 5000ms);
    EXPECT_THAT(Told(values, At(5100ms)), ElementsAre(Pair(6, 5000ms), Pair(6, 5000ms)));
}

TEST(ReceivedValues, AfterAHoleOnlyWhatIsToldAgainIsKnownUntilTheNextWholeMessage)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(1, 1000ms, 5), At(0ms)));

    ASSERT_TRUE(values.Take(Changed(4, 1300ms, 6), At(300ms)));

    EXPECT_EQ(values.LostCount(), 2U);
    EXPECT_THAT(Told(values, At(300ms)), ElementsAre(Pair(6, 0ms)));
    ASSERT_TRUE(values.Take(Changed(5, 1400ms, 7), At(400ms)));
    EXPECT_THAT(Told(values, At(400ms)), ElementsAre(Pair(7, 0ms)));
    ASSERT_TRUE(values.Take(Whole(6, 1500ms, 8), At(500ms)));
    EXPECT_THAT(Told(values, At(500ms)), ElementsAre(Pair(8, 0ms), Pair(8, 0ms)));
}

TEST(ReceivedValues, WhatCameWithoutAConnectionIsNotLost)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(1, 1000ms, 5), At(0ms)));

    values.Restart();

    EXPECT_EQ(values.Heard(), std::nullopt);
    ASSERT_TRUE(values.Take(Whole(90, 10000ms, 6), At(9000ms)));
    EXPECT_EQ(values.LostCount(), 0U);
}

TEST(ReceivedValues, AMessageThatIsNotNewerIsOfNoUse)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(2, 1000ms, 5), At(0ms)));

    EXPECT_FALSE(values.Take(Whole(2, 1000ms, 6), At(10ms)));
    EXPECT_FALSE(values.Take(Whole(1, 900ms, 6), At(20ms)));

    EXPECT_THAT(Told(values, At(0ms)), ElementsAre(Pair(5, 0ms), Pair(5, 0ms)));
}

TEST(ReceivedValues, AnotherProgramIsHeardOnlyWhenTheKnownOneIsSilent)
{
    ReceivedValues values;
    ASSERT_TRUE(values.Take(Whole(7, 60000ms, 5), At(0ms)));
    ValuesMessage other = Whole(0, 1000ms, 6);
    other.session = "b";

    EXPECT_FALSE(values.Take(other, At(999ms)));
    EXPECT_EQ(values.Session(), "a");
    EXPECT_TRUE(values.Take(other, At(1000ms)));

    EXPECT_EQ(values.Session(), "b");
    EXPECT_EQ(values.LostCount(), 0U);
    EXPECT_THAT(Told(values, At(1000ms)), ElementsAre(Pair(6, 0ms), Pair(6, 0ms)));
    EXPECT_EQ(values.RunningTime(At(1500ms)), 1500ms);
}

TEST(ReceivedValues, ARefusalIsToldOnceUntilTheOperandHasBeenRead)
{
    ReceivedValues values;
    ValuesMessage refused{"a", 1, 1000ms, true, {{Operand("MW20"), std::nullopt, "no"}}, {}};
    ASSERT_TRUE(values.Take(refused, At(0ms)));

    EXPECT_THAT(values.NewRefusals(watched), ElementsAre(Pair(Operand("MW20"), "no")));
    EXPECT_THAT(values.NewRefusals(watched), IsEmpty());
    EXPECT_THAT(Told(values, At(0ms)), IsEmpty());

    ASSERT_TRUE(values.Take(Whole(2, 1100ms, 5), At(100ms)));
    EXPECT_THAT(values.NewRefusals(watched), IsEmpty());
    refused.sequence = 3;
    ASSERT_TRUE(values.Take(refused, At(200ms)));
    EXPECT_THAT(values.NewRefusals(watched), ElementsAre(Pair(Operand("MW20"), "no")));
}

} // namespace
} // namespace plcremote
