#include "link_view.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using plclink::LinkState;
using plclink::LinkStatus;

const plclink::Clock::time_point now{10h};
const std::chrono::system_clock::time_point today{14h + 3min + 9s};

plclink::WatchedOperand WatchedSince(std::chrono::milliseconds age)
{
    return {plc::ParseOperand("MW20").value(), plclink::Reading{17, now - age}};
}

TEST(OldAge, IsASecondOrThreeTurnsWhenThoseAreLonger)
{
    EXPECT_EQ(OldAge(0ms), 1s);
    EXPECT_EQ(OldAge(100ms), 1s);
    EXPECT_EQ(OldAge(333ms), 1s);
    EXPECT_EQ(OldAge(500ms), 1500ms);
    EXPECT_EQ(OldAge(1min), 3min);
}

TEST(AgeText, CountsTenthsThenSecondsThenMinutes)
{
    EXPECT_EQ(AgeText(0ms), "0.0 s");
    EXPECT_EQ(AgeText(999ms), "0.9 s");
    EXPECT_EQ(AgeText(12340ms), "12.3 s");
    EXPECT_EQ(AgeText(59999ms), "59.9 s");
    EXPECT_EQ(AgeText(1min), "1 min 00 s");
    EXPECT_EQ(AgeText(2min + 5s), "2 min 05 s");
    EXPECT_EQ(AgeText(1h), "1 h 00 min");
    EXPECT_EQ(AgeText(27h + 7min + 59s), "27 h 07 min");
}

TEST(ValueText, IsSignedAsInTheDebuggerAndShowsItsBits)
{
    const auto text = [](const char* operand, std::uint32_t value) {
        return ValueText(plc::ParseOperand(operand).value(), value);
    };

    EXPECT_EQ(text("E0.1", 1), "1");
    EXPECT_EQ(text("MB20", 0xFF), "-1 (0xFF)");
    EXPECT_EQ(text("MW20", 1029), "1029 (0x0405)");
    EXPECT_EQ(text("MW20", 0xFFFE), "-2 (0xFFFE)");
    EXPECT_EQ(text("T3", 5), "5 (0x0005)");
    EXPECT_EQ(text("MD20", 0x80000000), "-2147483648 (0x80000000)");
}

/// The clock of a zone.
class ShownTest : public testing::Test
{
protected:
    ShownTest()
    {
        ::setenv("TZ", "UTC", 1);
        ::tzset();
    }
};

TEST_F(ShownTest, AYoungReadingHasItsAgeAndNoMark)
{
    const ShownOperand shown = Shown(WatchedSince(1000ms), 1s, now, today);

    EXPECT_EQ(shown.operand, "MW20");
    EXPECT_EQ(shown.value, "17 (0x0011)");
    EXPECT_EQ(shown.age, "1.0 s");
    EXPECT_EQ(NoteText(TextsIn("en"), shown), "");
}

TEST_F(ShownTest, AnOldReadingKeepsItsValueAndIsMarkedWithItsTime)
{
    const ShownOperand shown = Shown(WatchedSince(2001ms), 1s, now, today);

    EXPECT_EQ(shown.value, "17 (0x0011)");
    EXPECT_EQ(shown.age, "2.0 s");
    EXPECT_EQ(NoteText(TextsIn("en"), shown), "old, of 14:03:06");
    EXPECT_EQ(NoteText(TextsIn("de"), shown), "veraltet, von 14:03:06");
}

TEST_F(ShownTest, WhatWasNeverReadHasNoAge)
{
    const ShownOperand shown = Shown({plc::ParseOperand("MW20").value()}, 1s, now, today);

    EXPECT_EQ(shown.value, "?");
    EXPECT_EQ(shown.age, "");
    EXPECT_EQ(NoteText(TextsIn("en"), shown), "");
}

TEST_F(ShownTest, WhatTheMachineRefusesSaysWhy)
{
    const ShownOperand shown =
        Shown({plc::ParseOperand("MW20").value(), {}, "no such register"}, 1s, now, today);

    EXPECT_EQ(shown.value, "?");
    EXPECT_EQ(NoteText(TextsIn("en"), shown), "no such register");
}

TEST(Judged, ARunningLinkWithoutAYoungReadingIsSlow)
{
    const LinkState running{LinkStatus::Running};

    EXPECT_EQ(Judged(running, 1001ms, 1s).status, LinkStatus::Slow);
    EXPECT_EQ(Judged(running, 1000ms, 1s).status, LinkStatus::Running);
    EXPECT_EQ(Judged(running, {}, 1s).status, LinkStatus::Running);
}

TEST(Judged, ALinkThatDoesNotRunSaysSoItself)
{
    for (const LinkStatus status :
         {LinkStatus::Connecting, LinkStatus::Slow, LinkStatus::Lost, LinkStatus::Refused}) {
        const LinkState told{status, "why"};

        EXPECT_EQ(Judged(told, 1h, 1s), told);
    }
}

TEST(StatusWord, IsAnotherOneForEachStatus)
{
    EXPECT_STREQ(StatusWord(TextsIn("en"), LinkStatus::Connecting), "connecting");
    EXPECT_STREQ(StatusWord(TextsIn("en"), LinkStatus::Running), "running");
    EXPECT_STREQ(StatusWord(TextsIn("en"), LinkStatus::Slow), "slow");
    EXPECT_STREQ(StatusWord(TextsIn("de"), LinkStatus::Lost), "verloren");
    EXPECT_STREQ(StatusWord(TextsIn("de"), LinkStatus::Refused), "abgewiesen");
}

TEST(CountText, CountsWhatIsOldOnlyWhenSomethingIs)
{
    ShownOperand old;
    old.oldSince = "14:03:06";

    EXPECT_EQ(CountText(TextsIn("en"), {}), "Watched operands: 0");
    EXPECT_EQ(CountText(TextsIn("en"), {{}, {}}), "Watched operands: 2");
    EXPECT_EQ(CountText(TextsIn("en"), {old, {}}), "Watched operands: 2, of them old: 1");
}

TEST(LossText, CountsMessagesOnlyWhenSomeCameToNothing)
{
    EXPECT_EQ(LossText(TextsIn("en"), {}), "");
    EXPECT_EQ(LossText(TextsIn("en"), {3, 0}), "lost messages: 3");
    EXPECT_EQ(LossText(TextsIn("de"), {3, 1}), "verlorene Nachrichten: 3, unbrauchbare: 1");
    EXPECT_EQ(LossText(TextsIn("en"), {0, 1}), "unusable ones: 1");
}

TEST(StateSentence, HasAReasonWhenThereIsOne)
{
    EXPECT_EQ(StateSentence({LinkStatus::Running}), "the link is running");
    EXPECT_EQ(StateSentence({LinkStatus::Lost, "no answer"}), "the link is lost: no answer");
}

TEST(PerSecond, TellsTheLastFullSecond)
{
    PerSecond perSecond;

    EXPECT_EQ(perSecond.Count(100, now), 0U);
    EXPECT_EQ(perSecond.Count(150, now + 900ms), 0U);
    EXPECT_EQ(perSecond.Count(200, now + 1s), 100U);
    EXPECT_EQ(perSecond.Count(999, now + 1500ms), 100U);
    EXPECT_EQ(perSecond.Count(400, now + 3s), 100U);
    EXPECT_EQ(perSecond.Count(400, now + 4s), 0U);
}

} // namespace
} // namespace plchost
