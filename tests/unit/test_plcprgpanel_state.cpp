#include "plcprgpanel_state.h"
#include "records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using testing::ElementsAre;

namespace {

/// Lines with these steps, their states not known yet.
std::vector<DB_BAUSTEIN> LinesWithSteps(const std::vector<int>& steps)
{
    std::vector<DB_BAUSTEIN> lines;
    lines.reserve(steps.size());
    for (const int step : steps) {
        lines.push_back({step == noStep ? L"-" : L"?", L"-", L"", step});
    }
    return lines;
}

StepIndex IndexOf(const std::vector<DB_BAUSTEIN>& lines)
{
    StepIndex index;
    index.Build(lines);
    return index;
}

void Apply(const CMD_DATA& answer, std::vector<DB_BAUSTEIN>& lines)
{
    ApplyAnswer(answer, IndexOf(lines), lines);
}

/// What the first two columns would show, "?/-" for example.
std::vector<std::wstring> StatesAndValues(const std::vector<DB_BAUSTEIN>& lines)
{
    std::vector<std::wstring> shown;
    shown.reserve(lines.size());
    for (const DB_BAUSTEIN& line : lines) {
        shown.push_back(line.state + L"/" + line.value);
    }
    return shown;
}

/// How one step is shown after an answer.
std::wstring ShownAfter(AnsweredStep state)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({5});
    Apply(PrgStateAnswerRecord(5, 5, {state}), lines);
    return StatesAndValues(lines)[0];
}

} // namespace

TEST(PrgStateRequest, NamesARangeOfSteps)
{
    EXPECT_THAT(
        BytesOf(PrgStateRequest(0xFF, 0x200)),
        ElementsAre(0x10, 0x60, 14, 0, 0x02, 0x01, 0xFF, 0x00, 0, 0, 0x00, 0x02, 0, 0));
}

TEST(PrgStateRequest, OfASingleStepCountsOne)
{
    EXPECT_THAT(
        BytesOf(PrgStateRequest(7, 7)),
        ElementsAre(0x10, 0x60, 14, 0, 1, 0, 7, 0, 0, 0, 7, 0, 0, 0));
}

TEST(PrgStateRequest, ToStopCarriesZeros)
{
    EXPECT_THAT(
        BytesOf(PrgStateRequest(noStep, noStep)),
        ElementsAre(0x10, 0x60, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(PrgStateRequest, CountsInSixteenBits)
{
    EXPECT_EQ(PrgStateRequest(0, 0x10001).key, 2);
}

TEST(ApplyAnswer, OnlyAStateOfExactlyOneIsSet)
{
    EXPECT_EQ(ShownAfter({1, 0}), L"1/0");
    EXPECT_EQ(ShownAfter({0, 0}), L"0/0");
    EXPECT_EQ(ShownAfter({2, 0}), L"0/0");
    EXPECT_EQ(ShownAfter({255, 0}), L"0/0");
}

TEST(ApplyAnswer, TwoValuesMeanNone)
{
    EXPECT_EQ(ShownAfter({1, -1}), L"1/-");
    EXPECT_EQ(ShownAfter({1, 0x7FFFFFFF}), L"1/-");
    EXPECT_EQ(ShownAfter({1, -2}), L"1/-2");
    EXPECT_EQ(ShownAfter({1, 0x7FFFFFFE}), L"1/2147483646");
    EXPECT_EQ(ShownAfter({1, INT32_MIN}), L"1/-2147483648");
}

TEST(ApplyAnswer, TakesTheLargestAnswerWhole)
{
    std::vector<AnsweredStep> states(98, {0, 5});
    states.back() = {1, 99};
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({1096, 1097});

    Apply(PrgStateAnswerRecord(1000, 1097, states), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"0/5", L"1/99"));
}

TEST(ApplyAnswer, ReadsZerosBehindItsRecord)
{
    CMD_DATA record = PrgStateAnswerRecord(0, 1000, {});
    std::memset(record.payload + 8, 1, PLC_CMD_PAYLOAD_SIZE - 8);
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({491, 492});

    Apply(record, lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"1/0", L"0/0"));
}

TEST(ApplyAnswer, ReachesTheLinesThatCarryTheSteps)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({40, 41, noStep, 42, 43});

    Apply(PrgStateAnswerRecord(41, 42, {{1, 10}, {0, -1}}), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"?/-", L"1/10", L"-/-", L"0/-", L"?/-"));
}

TEST(ApplyAnswer, StepsOfNoLineArePassedOver)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({40, 41});

    Apply(PrgStateAnswerRecord(38, 43, {{1, 1}, {1, 2}, {1, 3}, {0, 4}, {1, 5}, {1, 6}}), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"1/3", L"0/4"));
}

TEST(ApplyAnswer, AValueThatIsNoLongerReportedIsGone)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({3});
    Apply(PrgStateAnswerRecord(3, 3, {{1, 10}}), lines);
    Apply(PrgStateAnswerRecord(3, 3, {{0, 0x7FFFFFFF}}), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"0/-"));
}

TEST(ApplyAnswer, ARangeThatEndsBeforeItsStartChangesNothing)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({3, 4});
    Apply(PrgStateAnswerRecord(4, 3, {{1, 10}, {1, 10}}), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"?/-", L"?/-"));
}

TEST(ApplyAnswer, ARangeUpToTheLargestNumberEnds)
{
    std::vector<DB_BAUSTEIN> lines = LinesWithSteps({3});
    Apply(PrgStateAnswerRecord(INT32_MAX - 1, INT32_MAX, {{1, 10}, {1, 10}}), lines);

    EXPECT_THAT(StatesAndValues(lines), ElementsAre(L"?/-"));
}

TEST(StepIndex, FindsTheLineOfEachStepAndNoOther)
{
    const StepIndex index = IndexOf(LinesWithSteps({noStep, 10, noStep, noStep, 11, 12, noStep}));

    EXPECT_EQ(index.LineOf(10), 1U);
    EXPECT_EQ(index.LineOf(11), 4U);
    EXPECT_EQ(index.LineOf(12), 5U);
    EXPECT_EQ(index.LineOf(9), std::nullopt);
    EXPECT_EQ(index.LineOf(13), std::nullopt);
    EXPECT_EQ(index.LineOf(noStep), std::nullopt);
}

TEST(StepIndex, OfABlockWithoutExecutableLinesIsEmpty)
{
    EXPECT_EQ(IndexOf(LinesWithSteps({noStep})).LineOf(0), std::nullopt);
    EXPECT_EQ(StepIndex().LineOf(0), std::nullopt);
}

TEST(StepIndex, IsBuiltAnewForAnotherBlock)
{
    StepIndex index = IndexOf(LinesWithSteps({1, 2, 3}));
    index.Build(LinesWithSteps({noStep, 3}));

    EXPECT_EQ(index.LineOf(3), 1U);
    EXPECT_EQ(index.LineOf(2), std::nullopt);
}
