#include "plclist_shown.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

/// One pixel a letter, and notes what was measured.
class Ruler
{
public:
    ShownColumn::Measure Measure()
    {
        return [this](const std::wstring& text) {
            measured.insert(text);
            return static_cast<int>(text.size());
        };
    }

    std::multiset<std::wstring> measured;
};

using Texts = std::multiset<std::wstring>;

} // namespace

TEST(ShownColumn, KeepsTheTextOfEachRow)
{
    ShownColumn column;
    column.Append(L"?");
    column.Append(L"?");
    column.Append(L"-");

    EXPECT_TRUE(column.Replace(1, L"1"));

    EXPECT_EQ(column.RowCount(), 3U);
    EXPECT_EQ(column.Text(0), L"?");
    EXPECT_EQ(column.Text(1), L"1");
    EXPECT_EQ(column.Text(2), L"-");
}

TEST(ShownColumn, TellsWhenATextIsTheSameAsBefore)
{
    ShownColumn column;
    column.Append(L"7");

    EXPECT_FALSE(column.Replace(0, L"7"));
    EXPECT_TRUE(column.Replace(0, L"8"));
    EXPECT_FALSE(column.Replace(0, L"8"));
}

TEST(ShownColumn, MeasuresEachDifferentTextOnce)
{
    ShownColumn column;
    Ruler ruler;
    for (const wchar_t* text : {L"1", L"1", L"22", L"1", L"22"}) {
        column.Append(text);
    }

    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 2);
    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 2);

    EXPECT_EQ(ruler.measured, (Texts{L"1", L"22"}));
}

TEST(ShownColumn, MeasuresTheTextOfARowOnce)
{
    ShownColumn column;
    Ruler ruler;
    for (const wchar_t* text : {L"1", L"22", L"1"}) {
        column.Append(text);
    }

    EXPECT_EQ(column.Width(0, ruler.Measure()), 1);
    EXPECT_EQ(column.Width(2, ruler.Measure()), 1);
    EXPECT_EQ(ruler.measured, (Texts{L"1"}));

    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 2);
    EXPECT_EQ(ruler.measured, (Texts{L"1", L"22"}));
}

TEST(ShownColumn, MeasuresOnlyTheNewTextOfAReplacedRow)
{
    ShownColumn column;
    Ruler ruler;
    column.Append(L"1");
    column.Append(L"22");
    column.MaxWidth(ruler.Measure());

    column.Replace(0, L"333");

    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 3);
    EXPECT_EQ(ruler.measured, (Texts{L"1", L"22", L"333"}));
}

TEST(ShownColumn, BecomesNarrowerWhenTheLastRowWithTheWidestTextChanges)
{
    ShownColumn column;
    Ruler ruler;
    column.Append(L"22");
    column.Append(L"22");
    column.Append(L"1");

    column.Replace(0, L"1");
    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 2);
    column.Replace(1, L"1");
    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 1);
}

TEST(ShownColumn, ForgetsTheTextsOfRemovedRowsAndMovesTheOthersUp)
{
    ShownColumn column;
    Ruler ruler;
    for (const wchar_t* text : {L"1", L"333", L"22", L"4"}) {
        column.Append(text);
    }

    column.Remove(1, 2);

    ASSERT_EQ(column.RowCount(), 2U);
    EXPECT_EQ(column.Text(0), L"1");
    EXPECT_EQ(column.Text(1), L"4");
    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 1);
}

TEST(ShownColumn, MeasuresEverythingAnewOnceItsWidthsAreForgotten)
{
    ShownColumn column;
    Ruler ruler;
    column.Append(L"1");
    column.MaxWidth(ruler.Measure());

    column.ForgetWidths();
    column.MaxWidth(ruler.Measure());

    EXPECT_EQ(ruler.measured, (Texts{L"1", L"1"}));
}

TEST(ShownColumn, WithoutRowsIsEmptyAndHasNoWidth)
{
    ShownColumn column;
    Ruler ruler;
    column.Append(L"22");
    column.Clear(0);

    EXPECT_EQ(column.RowCount(), 0U);
    EXPECT_EQ(column.MaxWidth(ruler.Measure()), 0);
}
