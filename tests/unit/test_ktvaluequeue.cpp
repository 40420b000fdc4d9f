#include <ktcore/ktvaluequeue.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t recordSize = 506;
using Record = std::array<unsigned char, recordSize>;

Record RecordOf(unsigned char content)
{
    Record record;
    record.fill(content);
    return record;
}

/// A value that tells who sent it, and as the how manieth.
struct Numbered
{
    int sender;
    int number;
};

constexpr int senders = 4;
constexpr int valuesOfASender = 5000;

void PushAll(KtValueQueue<Numbered>& queue, int sender)
{
    for (int number = 0; number < valuesOfASender; ++number) {
        queue.Push({sender, number});
    }
}

} // namespace

TEST(KtValueQueue, TheFirstInIsTheFirstOut)
{
    KtValueQueue<Record> queue;
    queue.Push(RecordOf(1));
    queue.Push(RecordOf(2));
    queue.Push(RecordOf(3));

    Record record = {};
    EXPECT_TRUE(queue.Pop(record));
    EXPECT_EQ(record, RecordOf(1));
    EXPECT_TRUE(queue.Pop(record));
    EXPECT_EQ(record, RecordOf(2));
    queue.Push(RecordOf(4));
    EXPECT_TRUE(queue.Pop(record));
    EXPECT_EQ(record, RecordOf(3));
    EXPECT_TRUE(queue.Pop(record));
    EXPECT_EQ(record, RecordOf(4));
    EXPECT_FALSE(queue.Pop(record));
}

TEST(KtValueQueue, AnEmptyQueueLeavesTheCallersRecordAlone)
{
    KtValueQueue<Record> queue;
    Record record = RecordOf(7);

    EXPECT_FALSE(queue.Pop(record));
    EXPECT_FALSE(queue.doPeek(record));

    EXPECT_EQ(record, RecordOf(7));
}

TEST(KtValueQueue, PeekingLeavesTheFirstElementInPlace)
{
    KtValueQueue<Record> queue;
    queue.Push(RecordOf(1));
    queue.Push(RecordOf(2));

    Record record = {};
    EXPECT_TRUE(queue.doPeek(record));
    EXPECT_EQ(record, RecordOf(1));
    EXPECT_TRUE(queue.doPeek(record));
    EXPECT_EQ(record, RecordOf(1));
    EXPECT_TRUE(queue.Pop(record));

    EXPECT_EQ(record, RecordOf(1));
}

TEST(KtValueQueue, TheSenderMayReuseItsRecord)
{
    KtValueQueue<Record> queue;
    Record record = RecordOf(1);
    queue.Push(record);

    record.fill(9);

    ASSERT_TRUE(queue.Pop(record));
    EXPECT_EQ(record, RecordOf(1));
}

TEST(KtValueQueue, DestroyingItDeletesWhatItStillHolds)
{
    const auto value = std::make_shared<int>(1);
    {
        KtValueQueue<std::shared_ptr<int>> queue;
        queue.Push(value);
        queue.Push(value);
        queue.Push(value);
        std::shared_ptr<int> popped;
        queue.Pop(popped);
        EXPECT_EQ(value.use_count(), 4);
    }

    EXPECT_EQ(value.use_count(), 1);
}

TEST(KtValueQueue, APoppedElementIsDeletedAtOnce)
{
    const auto value = std::make_shared<int>(1);
    KtValueQueue<std::shared_ptr<int>> queue;
    queue.Push(value);
    queue.Push(value);
    queue.Push(value);

    std::shared_ptr<int> popped;
    queue.Pop(popped);
    popped.reset();

    EXPECT_EQ(value.use_count(), 3);
}

TEST(KtValueQueue, AllThatIsTakenAtOnceIsInOrderAndGone)
{
    KtValueQueue<int> queue;
    int value = 0;
    for (int i = 0; i < 5; ++i) {
        queue.Push(i);
    }
    queue.Pop(value);

    const KtValueArray<int> taken = queue.TakeAll();

    ASSERT_EQ(taken.GetCount(), 4U);
    for (std::size_t i = 0; i < taken.GetCount(); ++i) {
        EXPECT_EQ(taken[i], static_cast<int>(i) + 1);
    }
    EXPECT_TRUE(queue.TakeAll().IsEmpty());
    queue.Push(9);
    ASSERT_TRUE(queue.Pop(value));
    EXPECT_EQ(value, 9);
}

TEST(KtValueQueue, UsesTheMemoryThatIsHandedBackAgain)
{
    KtValueQueue<Record> queue;
    queue.Push(RecordOf(1));
    KtValueArray<Record> used = queue.TakeAll();
    const Record* const place = &used[0];
    queue.GiveBack(std::move(used));

    queue.Push(RecordOf(2));
    queue.Push(RecordOf(3));

    const KtValueArray<Record> taken = queue.TakeAll();
    ASSERT_EQ(taken.GetCount(), 2U);
    EXPECT_EQ(&taken[0], place);
    EXPECT_EQ(taken[0], RecordOf(2));
    EXPECT_EQ(taken[1], RecordOf(3));
}

TEST(KtValueQueue, DeletesWhatWasHandedBackAndNotUsed)
{
    const auto value = std::make_shared<int>(1);
    KtValueQueue<std::shared_ptr<int>> queue;
    queue.Push(value);
    queue.GiveBack(queue.TakeAll());

    queue.GiveBack({});

    EXPECT_EQ(value.use_count(), 1);
}

TEST(KtValueQueue, LetsThePushedValueReplaceOthers)
{
    const auto keepNewest = [](KtValueArray<Record>& all) {
        return all.TakeFirst(all.GetCount() - 1);
    };
    KtValueQueue<Record> queue;
    queue.Push(RecordOf(1));
    queue.Push(RecordOf(2), keepNewest);
    queue.Push(RecordOf(3), keepNewest);

    const KtValueArray<Record> taken = queue.TakeAll();
    ASSERT_EQ(taken.GetCount(), 1U);
    EXPECT_EQ(taken[0], RecordOf(3));
}

TEST(KtValueQueue, KeepsNothingOnceItIsClosed)
{
    const auto value = std::make_shared<int>(1);
    KtValueQueue<std::shared_ptr<int>> queue;
    queue.Push(value);

    queue.Close();
    queue.Push(value);

    EXPECT_EQ(value.use_count(), 1);
    EXPECT_TRUE(queue.TakeAll().IsEmpty());
}

TEST(KtValueQueue, IsNotLockedAfterACopyThatFailed)
{
    struct Stubborn
    {
        Stubborn() = default;

        Stubborn(const Stubborn& other) : refuses(other.refuses)
        {
            if (refuses) {
                throw std::runtime_error("no memory");
            }
        }

        Stubborn& operator=(const Stubborn&) = default;
        bool refuses = false;
    };

    KtValueQueue<Stubborn> queue;
    Stubborn value;
    value.refuses = true;
    EXPECT_THROW(queue.Push(value), std::runtime_error);

    value.refuses = false;
    queue.Push(value);

    EXPECT_TRUE(queue.Pop(value));
    EXPECT_FALSE(queue.Pop(value));
}

TEST(KtValueQueue, LosesNothingOfFourThreadsAndKeepsTheOrderOfEach)
{
    KtValueQueue<Numbered> queue;
    std::vector<std::thread> threads;
    threads.reserve(senders);
    for (int sender = 0; sender < senders; ++sender) {
        threads.emplace_back(PushAll, std::ref(queue), sender);
    }

    std::array<int, senders> taken = {};
    Numbered value = {};
    for (int total = 0; total < senders * valuesOfASender;) {
        if (!queue.Pop(value)) {
            std::this_thread::yield();
            continue;
        }
        int& next = taken.at(static_cast<std::size_t>(value.sender));
        EXPECT_EQ(value.number, next);
        ++next;
        ++total;
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_FALSE(queue.Pop(value));
}

TEST(KtValueQueue, TwoReadersNeverTakeTheSameElement)
{
    KtValueQueue<Numbered> queue;
    PushAll(queue, 0);
    PushAll(queue, 1);
    const auto drain = [&queue](int& count) {
        Numbered value = {};
        while (queue.Pop(value)) {
            ++count;
        }
    };

    int first = 0;
    int second = 0;
    std::thread reader([&] { drain(first); });
    drain(second);
    reader.join();

    EXPECT_EQ(first + second, 2 * valuesOfASender);
}

TEST(KtValueQueue, TakingAllWhileFourThreadsPushLosesNothingAndKeepsTheOrderOfEach)
{
    KtValueQueue<Numbered> queue;
    std::atomic<int> stillPushing = senders;
    std::vector<std::thread> threads;
    threads.reserve(senders);
    for (int sender = 0; sender < senders; ++sender) {
        threads.emplace_back([&queue, &stillPushing, sender] {
            PushAll(queue, sender);
            --stillPushing;
        });
    }

    std::array<int, senders> taken = {};
    int outOfOrder = 0;
    bool isLast = false;
    while (!isLast) {
        isLast = stillPushing == 0;
        const KtValueArray<Numbered> all = queue.TakeAll();
        for (std::size_t i = 0; i < all.GetCount(); ++i) {
            int& next = taken.at(static_cast<std::size_t>(all[i].sender));
            outOfOrder += all[i].number == next ? 0 : 1;
            ++next;
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(outOfOrder, 0);
    for (const int count : taken) {
        EXPECT_EQ(count, valuesOfASender);
    }
}

TEST(KtValueQueue, AllIsTakenOnlyOnceAPopHasEnded)
{
    struct Value
    {
        Value() = default;

        explicit Value(int itsNumber) : number(itsNumber) {}

        Value(const Value&) = default;

        Value& operator=(const Value& other)
        {
            number = other.number;
            whileCopied();
            return *this;
        }

        int number = 0;
        std::function<void()> whileCopied = [] {};
    };

    KtValueQueue<Value> queue;
    queue.Push(Value(1));
    queue.Push(Value(2));
    std::atomic<bool> isTaking = false;
    KtValueArray<Value> all;
    std::thread taker;
    Value popped;
    popped.whileCopied = [&] {
        taker = std::thread([&] {
            isTaking = true;
            all = queue.TakeAll();
        });
        constexpr int turns = 1000; // more than enough for one who does not wait for the lock
        for (int turn = 0; !isTaking || turn < turns; ++turn) {
            std::this_thread::yield();
        }
    };

    queue.Pop(popped);

    taker.join();
    EXPECT_EQ(popped.number, 1);
    ASSERT_EQ(all.GetCount(), 1U);
    EXPECT_EQ(all[0].number, 2);
}
