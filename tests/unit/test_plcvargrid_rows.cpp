#include "plcvargrid_rows.h"

#include <gmock/gmock.h>

#include <optional>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::vector<std::pair<std::size_t, std::size_t>>
Toggled(const std::vector<RowBlock>& selected, std::size_t row)
{
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    for (const RowBlock& run : ToggledRows(selected, row)) {
        runs.emplace_back(run.first, run.last);
    }
    return runs;
}

} // namespace

TEST(OnlyRow, IsTheOneThatIsSelectedAlone)
{
    EXPECT_EQ(OnlyRow({{4, 4}}), std::optional<std::size_t>(4));
}

TEST(OnlyRow, IsNoneWhereNothingOrMoreIsSelected)
{
    EXPECT_EQ(OnlyRow({}), std::nullopt);
    EXPECT_EQ(OnlyRow({{4, 5}}), std::nullopt);
    EXPECT_EQ(OnlyRow({{4, 4}, {6, 6}}), std::nullopt);
}

TEST(ToggledRows, AddsARow)
{
    EXPECT_THAT(Toggled({}, 3), ElementsAre(Pair(3, 3)));
    EXPECT_THAT(Toggled({{1, 1}}, 3), ElementsAre(Pair(1, 1), Pair(3, 3)));
}

TEST(ToggledRows, TakesASelectedRowAway)
{
    EXPECT_THAT(Toggled({{3, 3}}, 3), IsEmpty());
    EXPECT_THAT(Toggled({{1, 1}, {3, 3}}, 1), ElementsAre(Pair(3, 3)));
}

TEST(ToggledRows, SplitsABlock)
{
    EXPECT_THAT(Toggled({{1, 4}}, 2), ElementsAre(Pair(1, 1), Pair(3, 4)));
}

TEST(ToggledRows, JoinsNeighbours)
{
    EXPECT_THAT(Toggled({{1, 1}, {3, 3}}, 2), ElementsAre(Pair(1, 3)));
}

TEST(ToggledRows, AreAscendingAndWithoutOverlapWhateverTheOrderOfTheSelection)
{
    EXPECT_THAT(Toggled({{7, 8}, {2, 5}, {4, 6}}, 0), ElementsAre(Pair(0, 0), Pair(2, 8)));
}
