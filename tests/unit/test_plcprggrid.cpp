#include "plcprggrid_rows.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// Lines by a letter each: x executable, anything else not. The first step is 40.
std::vector<DB_BAUSTEIN> Lines(const std::string& letters)
{
    std::vector<DB_BAUSTEIN> lines;
    int step = 40;
    for (const char letter : letters) {
        lines.push_back({L"", L"", L"", letter == 'x' ? step++ : noStep});
    }
    return lines;
}

std::string InWords(const std::optional<RowRange>& rows)
{
    return rows ? std::to_string(rows->first) + ".." + std::to_string(rows->last) : "none";
}

/// @param visible a letter a row, v for visible.
std::string Requested(const std::string& lines, const std::string& visible)
{
    const RowRange all{0, static_cast<int>(lines.size()) - 1};
    const auto isVisible = [&](int row) { return visible[static_cast<std::size_t>(row)] == 'v'; };
    return InWords(RowsToRequest(Lines(lines), all, isVisible));
}

/// The rule taken literally: every row is looked at, from the first on.
std::optional<RowRange>
LiteralRows(const std::vector<DB_BAUSTEIN>& lines, const std::function<bool(int)>& isVisible)
{
    const int count = static_cast<int>(lines.size());
    const auto step = [&](int row) { return lines[static_cast<std::size_t>(row)].step; };
    int first = 0;
    while (first < count && (step(first) == noStep || !isVisible(first))) {
        ++first;
    }
    if (first == count) {
        return std::nullopt;
    }
    int last = first;
    for (int row = first + 1; row < count; ++row) {
        if (step(row) != noStep) {
            if (!isVisible(row)) {
                break;
            }
            last = row;
        }
    }
    while (last > first && !(step(last) != noStep && step(last) < step(first) + 98)) {
        --last;
    }
    return RowRange{first, last};
}

/// The toolkit's rule for one dimension of a cell: one of its edges is inside the window.
bool TouchesWindow(int begin, int end, int windowSize)
{
    return (begin >= 0 && begin < windowSize) || (end > 0 && end <= windowSize);
}

} // namespace

TEST(RowsToRequest, AreTheVisibleExecutableOnes)
{
    EXPECT_EQ(Requested("xxxxxx", "..vvv."), "2..4");
    EXPECT_EQ(Requested("xxxxxx", "vvvvvv"), "0..5");
    EXPECT_EQ(Requested("xxxxxx", ".....v"), "5..5");
}

TEST(RowsToRequest, BeginAndEndAtAnExecutableLine)
{
    EXPECT_EQ(Requested("x-xx-x", ".vvvv."), "2..3");
}

TEST(RowsToRequest, GoOnBehindNonExecutableLines)
{
    EXPECT_EQ(Requested("x---x-x", "vvvvvvv"), "0..6");
    EXPECT_EQ(Requested("x---x-x", "v...vvv"), "0..6");
}

TEST(RowsToRequest, EndBeforeTheFirstExecutableLineOffScreen)
{
    EXPECT_EQ(Requested("xxx-x", "vv.vv"), "0..1");
}

TEST(RowsToRequest, AreNoneWithoutAVisibleExecutableLine)
{
    EXPECT_EQ(Requested("x--x", ".vv."), "none");
    EXPECT_EQ(Requested("xxx", "..."), "none");
    EXPECT_EQ(Requested("---", "vvv"), "none");
    EXPECT_EQ(Requested("", ""), "none");
}

TEST(RowsToRequest, AreNotLookedForOutsideTheRowsNearTheWindow)
{
    const auto all = [](int /*row*/) { return true; };

    EXPECT_EQ(InWords(RowsToRequest(Lines("xxxxxx"), {2, 3}, all)), "2..3");
    EXPECT_EQ(InWords(RowsToRequest(Lines("xxxxxx"), {0, -1}, all)), "none");
}

TEST(RowsToRequest, AreAtMost98Steps)
{
    const std::string lines(200, 'x');

    EXPECT_EQ(Requested(lines, std::string(98, 'v') + std::string(102, '.')), "0..97");
    EXPECT_EQ(Requested(lines, std::string(99, 'v') + std::string(101, '.')), "0..97");
    EXPECT_EQ(Requested(lines, std::string(200, 'v')), "0..97");
    EXPECT_EQ(Requested(lines, "." + std::string(199, 'v')), "1..98");
}

TEST(RowsToRequest, TheirLimitCountsStepsAndNotRows)
{
    const std::string lines = std::string(60, 'x') + std::string(60, '-') + std::string(60, 'x');

    EXPECT_EQ(Requested(lines, std::string(180, 'v')), "0..157");
}

TEST(RowsToRequest, TheirLimitEndsAtAnExecutableLine)
{
    const std::string lines = std::string(98, 'x') + "---xxx";

    EXPECT_EQ(Requested(lines, std::string(104, 'v')), "0..97");
}

TEST(RowsToRequest, NearTheWindowAgreeWithTheLiteralRuleOverAllRows)
{
    constexpr unsigned seed = 4711;
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) {
        return std::uniform_int_distribution<int>(0, limit)(random);
    };
    for (int run = 0; run < 3000; ++run) {
        std::string letters;
        const int executableOf10 = upTo(10);
        for (int row = upTo(300); row > 0; --row) {
            letters += upTo(9) < executableOf10 ? 'x' : '-';
        }
        const std::vector<DB_BAUSTEIN> lines = Lines(letters);
        const int rowHeight = 1 + upTo(30);
        const int windowHeight = upTo(3000);
        const int rowCount = static_cast<int>(lines.size());
        const int scrollTop = upTo(rowCount * rowHeight + 50);
        const auto isVisible = [&](int row) {
            const int top = row * rowHeight - scrollTop;
            return TouchesWindow(top, top + rowHeight - 1, windowHeight);
        };

        const RowRange near = RowsNearWindow(scrollTop, windowHeight, rowHeight, rowCount);

        ASSERT_EQ(
            InWords(RowsToRequest(lines, near, isVisible)), InWords(LiteralRows(lines, isVisible)))
            << "run " << run << " of seed " << seed;
    }
}

TEST(RowsNearWindow, AreFewWhereverTheWindowStands)
{
    const RowRange near = RowsNearWindow(60000 * 25, 400, 25, 65535);

    EXPECT_GE(near.first, 59990);
    EXPECT_LE(near.last, 60026);
}

TEST(RowsNearWindow, AreRowsOfTheListing)
{
    const RowRange near = RowsNearWindow(0, 400, 25, 3);

    EXPECT_EQ(near.first, 0);
    EXPECT_EQ(near.last, 2);
}
