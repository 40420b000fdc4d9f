#include <ktcore/ktarray.h>

#include <gmock/gmock.h>

#include <memory>
#include <random>
#include <vector>

namespace {

using testing::ElementsAre;

template <typename Array> auto ItemsOf(const Array& array)
{
    std::vector<int> items;
    for (std::size_t i = 0; i < array.GetCount(); ++i) {
        items.push_back(array[i]);
    }
    return items;
}

template <typename Array> Array Filled(int count)
{
    Array array;
    for (int i = 0; i < count; ++i) {
        array.Add(i);
    }
    return array;
}

} // namespace

TEST(KtArray, StartsEmpty)
{
    const KtArray<int> array;

    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetCount(), 0U);
}

TEST(KtArray, KeepsTheOrderOfAdding)
{
    EXPECT_THAT(ItemsOf(Filled<KtArray<int>>(4)), ElementsAre(0, 1, 2, 3));
}

TEST(KtArray, RemovesAnyPosition)
{
    auto array = Filled<KtArray<int>>(5);

    array.RemoveAt(0);
    array.RemoveAt(1);
    array.RemoveAt(2);

    EXPECT_THAT(ItemsOf(array), ElementsAre(1, 3));
}

TEST(KtArray, AnyMixOfAddingAndRemovingLeavesTheRestInOrder)
{
    constexpr unsigned seed = 48;
    constexpr int steps = 5000;
    std::mt19937 random(seed);
    KtArray<int> array;
    std::vector<int> model;
    for (int step = 0; step < steps; ++step) {
        const auto choice = random() % 4;
        if (choice < 2 || model.empty()) {
            array.Add(step);
            model.push_back(step);
        } else {
            // half of the removals at the front, as a queue does
            const std::size_t position = choice == 2 ? 0 : random() % model.size();
            array.RemoveAt(position);
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(position));
        }
        ASSERT_EQ(ItemsOf(array), model) << "seed " << seed << ", step " << step;
    }
}

TEST(KtArray, ARemovedFrontIsDestroyedAtOnce)
{
    KtArray<std::shared_ptr<int>> array;
    const auto front = std::make_shared<int>(1);
    array.Add(front);
    array.Add(std::make_shared<int>(2));
    array.Add(std::make_shared<int>(3));

    array.RemoveAt(0);

    EXPECT_EQ(front.use_count(), 1);
}

TEST(KtArray, GivesItsLastAndItsFirstElementsAway)
{
    auto array = Filled<KtArray<int>>(6);
    array.RemoveAt(0);

    EXPECT_EQ(array.TakeLast(), 5);
    EXPECT_THAT(ItemsOf(array.TakeFirst(2)), ElementsAre(1, 2));
    EXPECT_THAT(ItemsOf(array), ElementsAre(3, 4));
    EXPECT_THAT(ItemsOf(array.TakeFirst(2)), ElementsAre(3, 4));
    EXPECT_TRUE(array.IsEmpty());
}

TEST(KtArray, GivesAwayWhatIsAskedForFromTheLastToTheFirst)
{
    auto array = Filled<KtArray<int>>(7);
    array.RemoveAt(0);
    std::vector<int> asked;

    const auto even = array.TakeIf([&asked](int item) {
        asked.push_back(item);
        return item % 2 == 0;
    });

    EXPECT_THAT(asked, ElementsAre(6, 5, 4, 3, 2, 1));
    EXPECT_THAT(ItemsOf(even), ElementsAre(6, 4, 2));
    EXPECT_THAT(ItemsOf(array), ElementsAre(1, 3, 5));
}

TEST(KtArray, TakesAllOfAnotherBehindItsOwn)
{
    auto array = Filled<KtArray<int>>(2);
    auto other = Filled<KtArray<int>>(4);
    other.RemoveAt(0);
    KtArray<int> empty;

    array.Append(std::move(other));
    empty.Append(std::move(array));

    EXPECT_THAT(ItemsOf(empty), ElementsAre(0, 1, 1, 2, 3));
}

TEST(KtValueArray, HoldsCopiesOfItsOwn)
{
    const int value = 1;
    KtValueArray<int> array;

    array.Add(value);

    EXPECT_THAT(ItemsOf(array), ElementsAre(1));
    EXPECT_NE(&array[0], &value);
}

TEST(KtValueArray, RemovesFromTheEndToTheFront)
{
    auto array = Filled<KtValueArray<int>>(3);

    array.RemoveAt(2);
    array.RemoveAt(0);
    EXPECT_THAT(ItemsOf(array), ElementsAre(1));
    array.RemoveAt(0);

    EXPECT_TRUE(array.IsEmpty());
}

TEST(KtValueArray, ElementsDoNotMoveWhenItGrows)
{
    constexpr int many = 1000;
    KtValueArray<int> array;
    array.Add(0);
    const int* first = &array[0];

    for (int i = 1; i < many; ++i) {
        array.Add(i);
    }

    EXPECT_EQ(&array[0], first);
}

TEST(KtValueArray, DestroyingItDeletesItsElements)
{
    const auto value = std::make_shared<int>(1);
    {
        KtValueArray<std::shared_ptr<int>> array;
        array.Add(value);
        array.Add(value);
        EXPECT_EQ(value.use_count(), 3);
    }

    EXPECT_EQ(value.use_count(), 1);
}
