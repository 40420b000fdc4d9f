#include "image.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <stdexcept>
#include <string>

namespace {

using plc::Counter;
using plc::Image;
using plc::Timer;
using plc::TimerKind;
using std::chrono::milliseconds;

std::uint32_t ReadByName(const Image& image, const char* name)
{
    return image.Read(Image::CellOf(name));
}

void WriteByName(Image& image, const char* name, std::uint32_t value)
{
    image.Write(Image::CellOf(name), value);
}

TEST(Image, StartsWithEverythingZero)
{
    const Image image;

    for (const char* name :
         {"AB0", "EW62", "MD508", "T127", "Z63", "DB1.DBW2300", "DB100.DBB999"}) {
        EXPECT_EQ(ReadByName(image, name), 0U) << name;
    }
}

TEST(Image, WordsAndDoubleWordsHaveTheHighByteFirst)
{
    Image image;

    WriteByName(image, "MD4", 0x01020304);

    EXPECT_EQ(ReadByName(image, "MB4"), 1U);
    EXPECT_EQ(ReadByName(image, "MB7"), 4U);
    EXPECT_EQ(ReadByName(image, "MW5"), 0x0203U);
    EXPECT_EQ(ReadByName(image, "M7.2"), 1U);
}

TEST(Image, AWriteTakesTheBitsThatFitAndLeavesTheNeighbours)
{
    Image image;
    WriteByName(image, "MD0", 0xFFFFFFFF);

    WriteByName(image, "MB1", 0x1200);
    WriteByName(image, "M2.3", 2);
    WriteByName(image, "M1.0", 3);

    EXPECT_EQ(ReadByName(image, "MD0"), 0xFF01F7FFU);
}

TEST(Image, NegativeValuesComeBackWithoutSign)
{
    Image image;

    WriteByName(image, "MB0", static_cast<std::uint32_t>(-1));
    WriteByName(image, "MW2", static_cast<std::uint32_t>(-2));

    EXPECT_EQ(ReadByName(image, "MB0"), 0xFFU);
    EXPECT_EQ(ReadByName(image, "MW2"), 0xFFFEU);
}

TEST(Image, NoTwoAreasShareMemory)
{
    Image image;
    std::set<std::uint32_t> firsts;
    std::size_t areas = 3;

    for (const char* name : {"AB0", "EB0", "MB0"}) {
        firsts.insert(Image::CellOf(name).index);
    }
    for (const auto& block : plc::DataBlocks()) {
        const std::string name = "DB" + std::to_string(block.number) + ".DBB0";
        firsts.insert(Image::CellOf(name).index);
        ++areas;
    }
    WriteByName(image, "AB63", 0xFF);
    WriteByName(image, "MB0", 0xFF);

    EXPECT_EQ(firsts.size(), areas);
    EXPECT_EQ(ReadByName(image, "EB0"), 0U);
    EXPECT_EQ(ReadByName(image, "EB63"), 0U);
}

TEST(Image, AnOperandThatDoesNotExistIsNeitherReadNorWritten)
{
    Image image;
    const auto operand = plc::ParseOperand("DB5.DBW0").value();

    EXPECT_FALSE(image.Write(operand, 1));
    EXPECT_FALSE(image.Read(operand).has_value());
    EXPECT_THROW(Image::CellOf("EB64"), std::invalid_argument);
    EXPECT_THROW(Image::CellOf("nonsense"), std::invalid_argument);
}

TEST(Image, ClearingTheOutputsTouchesNothingElse)
{
    Image image;
    for (const char* name : {"AB0", "AB63", "EB0", "MB0"}) {
        WriteByName(image, name, 0xFF);
    }

    image.ClearOutputs();

    EXPECT_EQ(ReadByName(image, "AB0"), 0U);
    EXPECT_EQ(ReadByName(image, "AB63"), 0U);
    EXPECT_EQ(ReadByName(image, "EB0"), 0xFFU);
    EXPECT_EQ(ReadByName(image, "MB0"), 0xFFU);
}

TEST(Image, TimersAndCountersAreReadAndWrittenByTheirOneName)
{
    Image image;
    image.TimerAt(5).Drive(TimerKind::Pulse, true, 100);
    WriteByName(image, "Z12", 7);

    image.AdvanceTimers(milliseconds{25});
    const auto before = ReadByName(image, "T5");
    WriteByName(image, "T5", 3);

    EXPECT_EQ(before, 98U);
    EXPECT_EQ(ReadByName(image, "T5"), 3U);
    EXPECT_EQ(image.CounterAt(12).Value(), 7);
    EXPECT_TRUE(image.IsOn(Image::CellOf("T5")));
    EXPECT_TRUE(image.IsOn(Image::CellOf("Z12")));
    EXPECT_FALSE(image.IsOn(Image::CellOf("Z13")));
}

TEST(Timer, APulseLastsForItsTimeAtMost)
{
    Timer timer;

    timer.Drive(TimerKind::Pulse, true, 3);
    timer.Advance(milliseconds{29});
    const bool during = timer.IsOn();
    timer.Advance(milliseconds{1});
    timer.Drive(TimerKind::Pulse, true, 3);

    EXPECT_TRUE(during);
    EXPECT_FALSE(timer.IsOn());
    EXPECT_EQ(timer.Value(), 0);
}

TEST(Timer, APulseEndsWithItsInput)
{
    Timer timer;
    timer.Drive(TimerKind::Pulse, true, 3);

    timer.Drive(TimerKind::Pulse, false, 3);

    EXPECT_FALSE(timer.IsOn());
    EXPECT_EQ(timer.Value(), 0);
}

TEST(Timer, AnOnDelayComesOnAfterItsTimeAndGoesWithItsInput)
{
    Timer timer;

    timer.Drive(TimerKind::OnDelay, true, 2);
    timer.Advance(milliseconds{10});
    const bool before = timer.IsOn();
    const auto left = timer.Value();
    timer.Advance(milliseconds{10});
    timer.Drive(TimerKind::OnDelay, true, 2);
    const bool after = timer.IsOn();
    timer.Drive(TimerKind::OnDelay, false, 2);

    EXPECT_FALSE(before);
    EXPECT_EQ(left, 1);
    EXPECT_TRUE(after);
    EXPECT_FALSE(timer.IsOn());
}

TEST(Timer, AnOnDelayWhoseInputGoesEarlyNeverComesOn)
{
    Timer timer;
    timer.Drive(TimerKind::OnDelay, true, 2);

    timer.Drive(TimerKind::OnDelay, false, 2);
    timer.Advance(milliseconds{50});

    EXPECT_FALSE(timer.IsOn());
}

TEST(Timer, AnOffDelayStaysOnForItsTimeAfterTheInput)
{
    Timer timer;

    timer.Drive(TimerKind::OffDelay, true, 2);
    timer.Advance(milliseconds{500});
    const bool with = timer.IsOn();
    timer.Drive(TimerKind::OffDelay, false, 2);
    timer.Advance(milliseconds{19});
    const bool during = timer.IsOn();
    timer.Advance(milliseconds{1});

    EXPECT_TRUE(with);
    EXPECT_TRUE(during);
    EXPECT_FALSE(timer.IsOn());
}

TEST(Timer, AnOffDelayWhoseInputComesBackStartsAfresh)
{
    Timer timer;
    timer.Drive(TimerKind::OffDelay, true, 2);
    timer.Drive(TimerKind::OffDelay, false, 2);
    timer.Advance(milliseconds{15});

    timer.Drive(TimerKind::OffDelay, true, 2);
    timer.Advance(milliseconds{50});

    EXPECT_TRUE(timer.IsOn());
    EXPECT_EQ(timer.Value(), 0);
}

TEST(Timer, AnOffDelayThatWasResetStillDelaysTheEndOfItsInput)
{
    Timer timer;
    timer.Drive(TimerKind::OffDelay, true, 2);
    timer.Reset();

    timer.Drive(TimerKind::OffDelay, false, 2);

    EXPECT_TRUE(timer.IsOn());
    EXPECT_EQ(timer.Value(), 2);
}

TEST(Timer, ATimeOfZeroOrLessIsOverAtOnce)
{
    Timer pulse;
    Timer onDelay;

    pulse.Drive(TimerKind::Pulse, true, 0);
    onDelay.Drive(TimerKind::OnDelay, true, -5);

    EXPECT_FALSE(pulse.IsOn());
    EXPECT_TRUE(onDelay.IsOn());
}

TEST(Timer, ResetEndsItAndItsTimeNeedsANewEdge)
{
    Timer timer;
    timer.Drive(TimerKind::Pulse, true, 10);

    timer.Reset();
    timer.Drive(TimerKind::Pulse, true, 10);

    EXPECT_FALSE(timer.IsOn());
    EXPECT_EQ(timer.Value(), 0);
}

TEST(Timer, AWrittenTimeCountsOnlyWhileItRuns)
{
    Timer standing;
    Timer running;
    running.Drive(TimerKind::Pulse, true, 1000);

    standing.SetValue(5);
    running.SetValue(1);
    running.Advance(milliseconds{10});

    EXPECT_EQ(standing.Value(), 0);
    EXPECT_FALSE(running.IsOn());
}

TEST(Timer, AWrittenTimeIsTheLargestAtMost)
{
    Timer timer;
    timer.Drive(TimerKind::Pulse, true, 1000);

    timer.SetValue(plc::maxCount + 1);

    EXPECT_EQ(timer.Value(), plc::maxCount);
}

TEST(Counter, CountsRisingEdgesUpAndDown)
{
    Counter counter;

    for (const bool input : {true, true, false, true, false, true}) {
        counter.Up(input);
    }
    counter.Down(true);
    counter.Down(true);

    EXPECT_EQ(counter.Value(), 2);
}

TEST(Counter, StopsAtBothEnds)
{
    Counter counter;

    counter.Down(true);
    const auto low = counter.Value();
    counter.SetValue(40000);
    counter.Up(true);

    EXPECT_EQ(low, 0);
    EXPECT_EQ(counter.Value(), plc::maxCount);
}

TEST(Counter, SetTakesTheValueAtItsEdgeOnly)
{
    Counter counter;

    counter.Set(true, 9);
    counter.Set(true, 5);
    const auto first = counter.Value();
    counter.Set(false, 5);
    counter.Set(true, -5);

    EXPECT_EQ(first, 9);
    EXPECT_EQ(counter.Value(), 0);
    EXPECT_FALSE(counter.IsOn());
}

} // namespace
