#include "plcdebugframe_drain.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

/// An answer that says by its payload which one it is.
CMD_DATA Answer(std::uint16_t key, std::uint8_t serial)
{
    CMD_DATA answer{};
    answer.key = key;
    answer.payload[0] = serial;
    return answer;
}

bool Never()
{
    return false;
}

bool Always()
{
    return true;
}

AnswerQueue::Deliver AppendTo(std::vector<CMD_DATA>& delivered)
{
    return [&delivered](const CMD_DATA& answer) { delivered.push_back(answer); };
}

/// A program-state answer that says by its value which one it is.
CMD_DATA StateAnswer(std::int32_t first, std::int32_t serial)
{
    const std::uint8_t state = 0;
    return PlcMakePrgStateAnswer(first, first, &state, &serial);
}

/// What survives of the answers that one drain finds in the queue.
std::vector<CMD_DATA> NewestOf(const std::vector<CMD_DATA>& answers)
{
    AnswerQueue queue(VariableOf);
    for (const CMD_DATA& answer : answers) {
        queue.Push(answer);
    }
    std::vector<CMD_DATA> newest;
    queue.DeliverNewest(AppendTo(newest), Never);
    CMD_DATA left{};
    EXPECT_FALSE(queue.Pop(left));
    return newest;
}

std::vector<int> KeysOf(const std::vector<CMD_DATA>& answers)
{
    std::vector<int> keys(answers.size());
    std::transform(answers.begin(), answers.end(), keys.begin(), [](const CMD_DATA& answer) {
        return answer.key;
    });
    return keys;
}

std::vector<int> SerialsOf(const std::vector<CMD_DATA>& answers)
{
    std::vector<int> serials(answers.size());
    std::transform(answers.begin(), answers.end(), serials.begin(), [](const CMD_DATA& answer) {
        return answer.payload[0];
    });
    return serials;
}

/// @return a host's buffer of exactly @p size bytes whose length word says @p length.
Bytes HostAnswer(std::size_t size, std::uint16_t length)
{
    Bytes bytes(size, 0xAB);
    std::memcpy(&bytes[2], &length, sizeof length);
    return bytes;
}

Bytes RecordBytes(const CMD_DATA& record)
{
    Bytes bytes(sizeof record);
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

} // namespace

TEST(NewestAnswers, ANewerAnswerForTheSameKeyTakesTheLatestPlace)
{
    const auto newest = NewestOf({Answer(7, 1), Answer(9, 2), Answer(7, 3)});

    EXPECT_THAT(KeysOf(newest), testing::ElementsAre(9, 7));
    EXPECT_THAT(SerialsOf(newest), testing::ElementsAre(2, 3));
}

TEST(NewestAnswers, OfNothingIsNothing)
{
    EXPECT_TRUE(NewestOf({}).empty());
}

TEST(NewestAnswers, KeepsAnswersForDifferentKeysInOrderOfArrival)
{
    const auto newest = NewestOf({Answer(3, 1), Answer(1, 2), Answer(2, 3)});

    EXPECT_THAT(SerialsOf(newest), testing::ElementsAre(1, 2, 3));
}

TEST(NewestAnswers, OfAFloodForOneKeyIsTheLast)
{
    std::vector<CMD_DATA> flood(1000, Answer(5, 1));
    flood.push_back(Answer(5, 2));

    EXPECT_THAT(SerialsOf(NewestOf(flood)), testing::ElementsAre(2));
}

TEST(NewestAnswers, TellsTheSmallestAndTheLargestKeyApart)
{
    const auto newest = NewestOf({Answer(0, 1), Answer(0xFFFF, 2), Answer(0, 3)});

    EXPECT_THAT(KeysOf(newest), testing::ElementsAre(0xFFFF, 0));
}

TEST(NewestAnswers, ComparesOnlyTheKey)
{
    CMD_DATA otherCommand = Answer(7, 2);
    otherCommand.command = 0x1234;
    otherCommand.length = 506;

    EXPECT_THAT(SerialsOf(NewestOf({Answer(7, 1), otherCommand})), testing::ElementsAre(2));
}

namespace {

/// More than any queue keeps that nobody empties.
constexpr int floodSize = 400000;
constexpr int allKeys = 65536;

struct AnswerQueueTest : testing::Test
{
    void PushStates(const std::vector<int>& serials)
    {
        for (const int serial : serials) {
            states.Push(StateAnswer(7, serial));
        }
    }

    std::vector<int> DeliveredStates(const AnswerQueue::TimeIsUp& timeIsUp)
    {
        std::vector<int> serials;
        states.DeliverAll(
            [&serials](const CMD_DATA& answer) { serials.push_back(PlcStepValue(&answer, 0)); },
            timeIsUp);
        return serials;
    }

    void PushReads(int count, int keys)
    {
        for (int i = 0; i < count; ++i) {
            reads.Push(PlcMakeReadAnswer(static_cast<std::uint16_t>(i % keys), i));
        }
    }

    std::vector<int> DeliveredReads(const AnswerQueue::TimeIsUp& timeIsUp)
    {
        std::vector<int> values;
        reads.DeliverNewest(
            [&values](const CMD_DATA& answer) { values.push_back(PlcAnsweredValue(&answer)); },
            timeIsUp);
        return values;
    }

    AnswerQueue reads{VariableOf};
    AnswerQueue states{StepsOf};
};

} // namespace

TEST_F(AnswerQueueTest, DeliversEveryProgramStateInOrderOfArrival)
{
    PushStates({1, 2, 3});

    EXPECT_THAT(DeliveredStates(Never), testing::ElementsAre(1, 2, 3));
    EXPECT_THAT(DeliveredStates(Never), testing::IsEmpty());
}

TEST_F(AnswerQueueTest, DeliversAProgramStateThatArrivesMeanwhile)
{
    PushStates({1});
    int delivered = 0;

    states.DeliverAll(
        [&](const CMD_DATA&) {
            ++delivered;
            PushStates({delivered < 3 ? std::vector<int>{2} : std::vector<int>{}});
        },
        Never);

    EXPECT_EQ(delivered, 3);
}

TEST_F(AnswerQueueTest, WhatTheTimeDidNotReachForWaitsForTheNextTick)
{
    PushStates({1});
    states.Push(StateAnswer(8, 2));
    PushReads(3, 3);

    EXPECT_THAT(DeliveredStates(Always), testing::ElementsAre(1));
    EXPECT_THAT(DeliveredReads(Always), testing::ElementsAre(0));

    EXPECT_THAT(DeliveredStates(Never), testing::ElementsAre(2));
    EXPECT_THAT(DeliveredReads(Never), testing::ElementsAre(1, 2));
}

TEST_F(AnswerQueueTest, AHostThatAnswersWithoutEndDoesNotHoldATick)
{
    PushStates({1});
    int delivered = 0;

    states.DeliverAll(
        [&](const CMD_DATA&) {
            ++delivered;
            PushStates({2});
        },
        [&delivered] { return delivered == 10; });

    EXPECT_EQ(delivered, 10);
}

TEST_F(AnswerQueueTest, OfWhatWaitsForTheNextTickTheNewestOfTheSameStepsIsDelivered)
{
    PushStates({1, 2, 3});
    ASSERT_THAT(DeliveredStates(Always), testing::ElementsAre(1));

    states.Push(StateAnswer(8, 4));
    PushStates({5});

    EXPECT_THAT(DeliveredStates(Never), testing::ElementsAre(4, 5));
}

TEST_F(AnswerQueueTest, AfterAFloodEveryProgramStateIsDeliveredAgain)
{
    PushStates({1, 2});
    DeliveredStates(Always);
    DeliveredStates(Never);

    PushStates({3, 4});

    EXPECT_THAT(DeliveredStates(Never), testing::ElementsAre(3, 4));
}

TEST_F(AnswerQueueTest, OfAFloodForFewVariablesTheNewestOfEachIsKept)
{
    constexpr int keys = 20;
    PushReads(floodSize, keys);
    EXPECT_LT(reads.TakeAll().GetCount(), 20000U);
    PushReads(floodSize, keys);

    const std::vector<int> delivered = DeliveredReads(Never);

    ASSERT_EQ(delivered.size(), keys);
    EXPECT_EQ(delivered.front(), floodSize - keys);
    EXPECT_EQ(delivered.back(), floodSize - 1);
}

TEST_F(AnswerQueueTest, OfAFloodForAllVariablesTheNewestOfEachIsKept)
{
    PushReads(floodSize, allKeys);

    const std::vector<int> delivered = DeliveredReads(Never);

    ASSERT_EQ(delivered.size(), allKeys);
    EXPECT_EQ(delivered.front(), floodSize - allKeys);
    EXPECT_EQ(delivered.back(), floodSize - 1);
}

TEST_F(AnswerQueueTest, OfAFloodForMoreStepsThanThereAreTheLatestAreKept)
{
    for (int i = 0; i < floodSize; ++i) {
        states.Push(StateAnswer(i, i));
    }

    const std::vector<int> delivered = DeliveredStates(Never);

    EXPECT_LT(delivered.size(), 2 * allKeys + allKeys / 2);
    EXPECT_EQ(delivered.back(), floodSize - 1);
}

TEST_F(AnswerQueueTest, KeepsNothingOnceItIsClosed)
{
    PushStates({1});
    PushReads(3, 3);
    DeliveredReads(Always);

    states.Close();
    reads.Close();
    PushStates({2});

    EXPECT_THAT(DeliveredStates(Never), testing::IsEmpty());
    EXPECT_THAT(DeliveredReads(Never), testing::IsEmpty());
}

TEST(CopyAnswer, TakesAsManyBytesAsTheLengthWordSays)
{
    const Bytes host = HostAnswer(10, 10);

    const Bytes copy = RecordBytes(CopyAnswer(host.data()));

    EXPECT_TRUE(std::equal(host.begin(), host.end(), copy.begin()));
    EXPECT_TRUE(std::all_of(copy.begin() + 10, copy.end(), [](int byte) { return byte == 0; }));
}

TEST(CopyAnswer, TakesAWholeRecord)
{
    const Bytes host = HostAnswer(506, 506);

    EXPECT_EQ(RecordBytes(CopyAnswer(host.data())), host);
}

TEST(CopyAnswer, NeverTakesMoreThanARecord)
{
    for (const std::uint16_t length : std::vector<std::uint16_t>{507, 600, 65535}) {
        const Bytes host = HostAnswer(506, length);

        EXPECT_EQ(RecordBytes(CopyAnswer(host.data())), host) << length;
    }
}

TEST(CopyAnswer, ShorterThanItsFieldsIsFilledWithZeros)
{
    // Only two bytes of the four-byte value are there.
    const Bytes host = HostAnswer(8, 8);

    const CMD_DATA record = CopyAnswer(host.data());

    EXPECT_EQ(record.key, 0xABAB);
    EXPECT_THAT(
        std::vector<int>(record.payload, record.payload + 4),
        testing::ElementsAre(0xAB, 0xAB, 0, 0));
}

TEST(CopyAnswer, WithoutAnyMeaningfulByteIsAllZero)
{
    const Bytes host = HostAnswer(4, 0);

    EXPECT_EQ(RecordBytes(CopyAnswer(host.data())), Bytes(506, 0));
}

TEST(CopyAnswer, ReadsAtAnyAlignment)
{
    const Bytes host = HostAnswer(20, 20);
    for (std::size_t shift = 0; shift < 8; ++shift) {
        Bytes shifted(shift, 0);
        shifted.insert(shifted.end(), host.begin(), host.end());

        const Bytes copy = RecordBytes(CopyAnswer(shifted.data() + shift));

        EXPECT_TRUE(std::equal(host.begin(), host.end(), copy.begin())) << shift;
    }
}
