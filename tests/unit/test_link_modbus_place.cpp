#include "modbus_place.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using plclink::ModbusRange;
using plclink::ModbusSpan;
using plclink::ModbusTable;
using plclink::ModbusWrite;
using testing::ElementsAre;

constexpr bool highFirst = false;
constexpr bool lowFirst = true;

plc::Operand Named(const std::string& name)
{
    const auto operand = plc::ParseOperand(name);
    EXPECT_TRUE(operand && plc::Exists(*operand)) << name;
    return operand.value_or(plc::Operand{});
}

ModbusRange
Range(const std::string& first, const std::string& last, ModbusTable table = ModbusTable::Holding)
{
    ModbusRange range;
    range.name = "r";
    range.first = Named(first);
    range.last = Named(last);
    range.table = table;
    range.start = 100;
    range.isWritable = true;
    return range;
}

ModbusRange Flags(bool isLowByteFirst, bool isLowWordFirst)
{
    ModbusRange range = Range("MW0", "MW98");
    range.isLowByteFirst = isLowByteFirst;
    range.isLowWordFirst = isLowWordFirst;
    return range;
}

std::uint32_t
Value(const ModbusRange& range, const std::string& name, const std::vector<std::uint16_t>& content)
{
    const auto span = plclink::FindSpan(range, Named(name));
    EXPECT_EQ(span.value_or(ModbusSpan{0, 0}).Count(), content.size()) << name;
    return plclink::ValueIn(range, Named(name), content);
}

std::string WhyNot(const ModbusRange& range, const std::string& name)
{
    const auto write = plclink::WriteOf(range, Named(name), 1);
    return write ? "" : write.Message();
}

TEST(FindSpan, FindsEachWidthInItsRegisters)
{
    const ModbusRange range = Range("MW10", "MW98");
    const auto span = [&](const char* name) { return plclink::FindSpan(range, Named(name)); };

    EXPECT_EQ(span("MW10"), (ModbusSpan{100, 101}));
    EXPECT_EQ(span("MW12"), (ModbusSpan{101, 102}));
    EXPECT_EQ(span("MW11"), (ModbusSpan{100, 102}));
    EXPECT_EQ(span("MD12"), (ModbusSpan{101, 103}));
    EXPECT_EQ(span("MD13"), (ModbusSpan{101, 104}));
    EXPECT_EQ(span("MB12"), (ModbusSpan{101, 102}));
    EXPECT_EQ(span("MB13"), (ModbusSpan{101, 102}));
    EXPECT_EQ(span("M13.7"), (ModbusSpan{101, 102}));
    EXPECT_EQ(span("MB99"), (ModbusSpan{144, 145}));
}

TEST(FindSpan, FindsTimersAndCountersInOneRegisterEach)
{
    EXPECT_EQ(plclink::FindSpan(Range("T5", "T63"), Named("T7")), (ModbusSpan{102, 103}));
    EXPECT_EQ(plclink::FindSpan(Range("Z0", "Z62"), Named("Z62")), (ModbusSpan{162, 163}));
}

TEST(FindSpan, FindsEachBitOfABitTable)
{
    const ModbusRange range = Range("E1.4", "E9.7", ModbusTable::Discrete);
    const auto span = [&](const char* name) { return plclink::FindSpan(range, Named(name)); };

    EXPECT_EQ(span("E1.4"), (ModbusSpan{100, 101}));
    EXPECT_EQ(span("E2.0"), (ModbusSpan{104, 105}));
    EXPECT_EQ(span("EB2"), (ModbusSpan{104, 112}));
    EXPECT_EQ(span("EW2"), (ModbusSpan{104, 120}));
    EXPECT_EQ(span("ED6"), (ModbusSpan{136, 168}));
}

TEST(FindSpan, FindsNothingThatDoesNotLieInTheRangeAsAWhole)
{
    const ModbusRange range = Range("MW10", "MW98");
    for (const char* name :
         {"MW9", "MB9", "M9.7", "MW99", "MD98", "MB100", "M100.0", "EW10", "DB10.DBW10", "T10"}) {
        EXPECT_FALSE(plclink::FindSpan(range, Named(name))) << name;
    }
    const ModbusRange bits = Range("E1.4", "E9.6", ModbusTable::Coil);
    for (const char* name : {"E1.3", "EB1", "EB9", "E9.7"}) {
        EXPECT_FALSE(plclink::FindSpan(bits, Named(name))) << name;
    }
    EXPECT_FALSE(plclink::FindSpan(Range("DB10.DBW0", "DB10.DBW8"), Named("DB15.DBW0")));
}

TEST(SpanOf, CountsABegunRegister)
{
    EXPECT_EQ(plclink::SpanOf(Range("MB0", "MB6")), (ModbusSpan{100, 104}));
    EXPECT_EQ(plclink::SpanOf(Range("MD0", "MD4")), (ModbusSpan{100, 104}));
    EXPECT_EQ(plclink::SpanOf(Range("T0", "T63")), (ModbusSpan{100, 164}));
    EXPECT_EQ(plclink::SpanOf(Range("E0.3", "E1.0", ModbusTable::Coil)), (ModbusSpan{100, 106}));
}

TEST(ValueIn, FollowsTheOrderOfBytes)
{
    const ModbusRange high = Flags(highFirst, highFirst);
    EXPECT_EQ(Value(high, "MW0", {0x1234}), 0x1234U);
    EXPECT_EQ(Value(high, "MB0", {0x1234}), 0x12U);
    EXPECT_EQ(Value(high, "MB1", {0x1234}), 0x34U);
    EXPECT_EQ(Value(high, "MW1", {0x1234, 0x5678}), 0x3456U);
    EXPECT_EQ(Value(high, "M0.4", {0x1034}), 1U);
    EXPECT_EQ(Value(high, "M1.4", {0xFFEF}), 0U);

    const ModbusRange low = Flags(lowFirst, highFirst);
    EXPECT_EQ(Value(low, "MW0", {0x1234}), 0x3412U);
    EXPECT_EQ(Value(low, "MB0", {0x1234}), 0x34U);
    EXPECT_EQ(Value(low, "MB1", {0x1234}), 0x12U);
    EXPECT_EQ(Value(low, "MW1", {0x1234, 0x5678}), 0x1278U);
    EXPECT_EQ(Value(low, "M0.4", {0x0010}), 1U);
    EXPECT_EQ(Value(low, "M1.4", {0xEFFF}), 0U);
}

TEST(ValueIn, PutsADoubleWordTogetherInAllFourOrders)
{
    EXPECT_EQ(Value(Flags(highFirst, highFirst), "MD0", {0x1234, 0x5678}), 0x12345678U);
    EXPECT_EQ(Value(Flags(highFirst, lowFirst), "MD0", {0x1234, 0x5678}), 0x56781234U);
    EXPECT_EQ(Value(Flags(lowFirst, highFirst), "MD0", {0x1234, 0x5678}), 0x34127856U);
    EXPECT_EQ(Value(Flags(lowFirst, lowFirst), "MD0", {0x1234, 0x5678}), 0x78563412U);
}

TEST(ValueIn, PutsADoubleWordTogetherThatBeginsInTheMiddleOfARegister)
{
    const std::vector<std::uint16_t> content{0x0012, 0x3456, 0x7800};
    EXPECT_EQ(Value(Flags(highFirst, highFirst), "MD1", content), 0x12345678U);
    EXPECT_EQ(Value(Flags(highFirst, lowFirst), "MD1", content), 0x56781234U);
    const std::vector<std::uint16_t> swapped{0x1200, 0x5634, 0x0078};
    EXPECT_EQ(Value(Flags(lowFirst, highFirst), "MD1", swapped), 0x12345678U);
    EXPECT_EQ(Value(Flags(lowFirst, lowFirst), "MD1", swapped), 0x56781234U);
}

TEST(ValueIn, TakesTimersAndCountersAsWords)
{
    ModbusRange timers = Range("T0", "T63");
    EXPECT_EQ(Value(timers, "T7", {0x1234}), 0x1234U);
    timers.isLowByteFirst = true;
    EXPECT_EQ(Value(timers, "T7", {0x1234}), 0x3412U);
    EXPECT_EQ(Value(Range("Z0", "Z62"), "Z1", {0xFFFF}), 0xFFFFU);
}

TEST(ValueIn, PutsBitsTogetherWithTheLowestFirstAndTheHighByteFirst)
{
    const ModbusRange range = Range("MB0", "MB9", ModbusTable::Coil);
    EXPECT_EQ(Value(range, "M0.3", {1}), 1U);
    EXPECT_EQ(Value(range, "M0.3", {0}), 0U);
    const std::vector<std::uint16_t> byte0x12{0, 1, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(Value(range, "MB3", byte0x12), 0x12U);
    std::vector<std::uint16_t> word = byte0x12;
    word.insert(word.end(), {0, 0, 1, 0, 1, 1, 0, 0});
    EXPECT_EQ(Value(range, "MW3", word), 0x1234U);
    std::vector<std::uint16_t> doubleWord = word;
    doubleWord.insert(doubleWord.end(), {1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(Value(range, "MD3", doubleWord), 0x12348100U);
}

TEST(WriteOf, ReplacesWordsAndDoubleWordsInAllFourOrders)
{
    const auto content = [](bool bytes, bool words, const char* name) {
        const auto write = plclink::WriteOf(Flags(bytes, words), Named(name), 0x12345678);
        EXPECT_TRUE(write && write->kind == ModbusWrite::Kind::Replace) << name;
        return write ? write->content : std::vector<std::uint16_t>{};
    };
    EXPECT_THAT(content(highFirst, highFirst, "MD4"), ElementsAre(0x1234, 0x5678));
    EXPECT_THAT(content(highFirst, lowFirst, "MD4"), ElementsAre(0x5678, 0x1234));
    EXPECT_THAT(content(lowFirst, highFirst, "MD4"), ElementsAre(0x3412, 0x7856));
    EXPECT_THAT(content(lowFirst, lowFirst, "MD4"), ElementsAre(0x7856, 0x3412));
    EXPECT_THAT(content(highFirst, highFirst, "MW4"), ElementsAre(0x5678));
    EXPECT_THAT(content(lowFirst, highFirst, "MW4"), ElementsAre(0x7856));
}

TEST(WriteOf, MasksBitsAndBytesInsideARegister)
{
    const auto masked = [](bool bytes, const char* name, std::uint32_t value) {
        const auto write = plclink::WriteOf(Flags(bytes, highFirst), Named(name), value);
        EXPECT_TRUE(write && write->kind == ModbusWrite::Kind::Mask) << name;
        EXPECT_TRUE(write && write->content.size() == 1) << name;
        return write ? plclink::Masked(0x1234, write->mask, write->content.at(0)) : 0;
    };
    EXPECT_EQ(masked(highFirst, "MB4", 0xFFAB), 0xAB34);
    EXPECT_EQ(masked(highFirst, "MB5", 0xFFAB), 0x12AB);
    EXPECT_EQ(masked(lowFirst, "MB4", 0xFFAB), 0x12AB);
    EXPECT_EQ(masked(lowFirst, "MB5", 0xFFAB), 0xAB34);
    EXPECT_EQ(masked(highFirst, "M4.0", 1), 0x1334);
    EXPECT_EQ(masked(highFirst, "M4.1", 0xFFFE), 0x1034);
    EXPECT_EQ(masked(highFirst, "M5.7", 1), 0x12B4);
    EXPECT_EQ(masked(lowFirst, "M5.7", 1), 0x9234);
}

TEST(WriteOf, GivesBackWhatItWroteForEveryOrderTableAndWidth)
{
    for (const ModbusTable table : {ModbusTable::Coil, ModbusTable::Holding}) {
        for (const bool bytes : {highFirst, lowFirst}) {
            for (const bool words : {highFirst, lowFirst}) {
                ModbusRange range = Range("MB0", "MB99", table);
                range.isLowByteFirst = bytes && plclink::HasRegisters(table);
                range.isLowWordFirst = words && plclink::HasRegisters(table);
                for (const auto& [name, value] : std::vector<std::pair<const char*, std::uint32_t>>{
                         {"M3.5", 1},
                         {"M4.2", 1},
                         {"MB3", 0xA5},
                         {"MB4", 0x5A},
                         {"MW4", 0x8001},
                         {"MD4", 0x80FF0102}}) {
                    const auto write = plclink::WriteOf(range, Named(name), value);
                    ASSERT_TRUE(write) << name;
                    EXPECT_EQ(write->span, plclink::FindSpan(range, Named(name))) << name;
                    EXPECT_EQ(Value(range, name, write->content), value) << name;
                }
            }
        }
    }
}

TEST(WriteOf, WritesTimersAndCountersAsWords)
{
    const auto write = plclink::WriteOf(Range("T0", "T63"), Named("T7"), 250);

    ASSERT_TRUE(write);
    EXPECT_EQ(write->kind, ModbusWrite::Kind::Replace);
    EXPECT_THAT(write->content, ElementsAre(250));
}

TEST(WriteOf, SaysWhyAnOperandIsOnlyRead)
{
    ModbusRange range = Flags(highFirst, highFirst);
    EXPECT_EQ(WhyNot(range, "MW1"), "MW1 is only read: it begins in the middle of a register");
    EXPECT_EQ(WhyNot(range, "MD1"), "MD1 is only read: it begins in the middle of a register");
    EXPECT_EQ(WhyNot(range, "MB1"), "");
    EXPECT_EQ(WhyNot(range, "MW100"), "MW100 is not in the range r");
    EXPECT_EQ(WhyNot(Range("MB0", "MB9", ModbusTable::Coil), "MW1"), "");
    range.isWritable = false;
    EXPECT_EQ(WhyNot(range, "MW0"), "MW0 is only read: its range r does not say write = yes");
}

} // namespace
