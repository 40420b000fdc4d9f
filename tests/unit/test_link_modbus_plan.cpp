#include "modbus_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using plclink::ModbusBlock;
using plclink::ModbusMap;
using plclink::ModbusPlan;
using plclink::ModbusSpan;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

ModbusMap MapOf(const std::string& text)
{
    plclink::MapReading reading = plclink::ReadModbusMap(text);
    EXPECT_TRUE(reading.map);
    return reading.map.value_or(ModbusMap{});
}

/// Flags in holding registers from 0: MW0 in 0, MW2 in 1.
ModbusMap Flags(const std::string& device = "")
{
    return MapOf(
        "[device]\n" + device + "[range a]\noperands = MW0..MW498\ntable = holding\nstart = 0\n");
}

plclink::WatchList Named(const std::vector<std::string>& names)
{
    plclink::WatchList list;
    for (const std::string& name : names) {
        list.push_back(plc::ParseOperand(name).value_or(plc::Operand{}));
        EXPECT_TRUE(plc::Exists(list.back())) << name;
    }
    return list;
}

/// Count words from MW0 on.
plclink::WatchList Words(int count)
{
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        names.push_back("MW" + std::to_string(2 * i));
    }
    return Named(names);
}

/// "MW0 MW2", by address.
std::string NamesIn(const ModbusBlock& block)
{
    std::string names;
    for (const plclink::ModbusItem& item : block.items) {
        names += (names.empty() ? "" : " ") + plc::OperandName(item.operand);
    }
    return names;
}

std::vector<std::string> Names(const std::vector<ModbusBlock>& blocks)
{
    std::vector<std::string> names;
    std::transform(blocks.begin(), blocks.end(), std::back_inserter(names), NamesIn);
    return names;
}

std::vector<std::string> NamesAtOnce(const ModbusMap& map, const std::vector<std::string>& watched)
{
    ModbusPlan plan(map);
    plan.Watch(Named(watched));
    return Names(plan.Blocks({}));
}

/// What a device lets be read.
using Device = std::function<bool(const ModbusSpan& span)>;

Device Without(std::vector<std::uint32_t> addresses)
{
    return [addresses = std::move(addresses)](const ModbusSpan& span) {
        return std::none_of(addresses.begin(), addresses.end(), [&](std::uint32_t address) {
            return span.begin <= address && address < span.end;
        });
    };
}

/// One turn of a plan with a device.
struct Turn
{
    std::size_t requests = 0;
    std::vector<std::string> read{};
    std::vector<std::string> refused{};
};

Turn TurnOf(ModbusPlan& plan, const Device& device, plclink::Clock::time_point now = {})
{
    Turn turn;
    const std::vector<ModbusBlock> blocks = plan.Blocks(now);
    std::deque<ModbusBlock> open(blocks.begin(), blocks.end());
    while (!open.empty()) {
        const ModbusBlock block = open.front();
        open.pop_front();
        ++turn.requests;
        if (device(block.span)) {
            plan.Accept(block);
            for (const plclink::ModbusItem& item : block.items) {
                turn.read.push_back(plc::OperandName(item.operand));
            }
            continue;
        }
        const std::vector<ModbusBlock> halves = plan.Refuse(block, now);
        if (halves.empty()) {
            turn.refused.push_back(NamesIn(block));
        }
        open.insert(open.begin(), halves.begin(), halves.end());
    }
    plan.EndTurn();
    return turn;
}

TEST(RangeOf, SaysWhyAnOperandCannotBeRead)
{
    const ModbusMap map = Flags("registers = 1\n");
    const auto range = [&](const char* name) { return RangeOf(map, Named({name})[0]); };

    EXPECT_TRUE(range("MW498"));
    ASSERT_FALSE(range("MW500"));
    EXPECT_EQ(range("MW500").Message(), "the map has no range with MW500");
    ASSERT_FALSE(range("MD0"));
    EXPECT_EQ(range("MD0").Message(), "MD0 takes 2 registers in one request, the map allows 1");
    ASSERT_FALSE(range("MW1"));
}

TEST(ModbusPlan, ReadsOneRangeAtOnceWithItsGaps)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Named({"MW100", "M3.4", "MD20", "MB0", "MW100"}));

    const std::vector<ModbusBlock> blocks = plan.Blocks({});

    ASSERT_THAT(blocks, SizeIs(1));
    EXPECT_EQ(blocks[0].span, (ModbusSpan{0, 51}));
    EXPECT_EQ(NamesIn(blocks[0]), "MB0 M3.4 MD20 MW100 MW100");
    EXPECT_EQ(blocks[0].items[0].place, 3U);
}

TEST(ModbusPlan, ReadsTwentyOperandsOverTwoHundredRegistersInTwoRequests)
{
    std::vector<std::string> names;
    for (int i = 0; i < 20; ++i) {
        names.push_back("MW" + std::to_string(i * 20));
    }
    EXPECT_THAT(NamesAtOnce(Flags(), names), SizeIs(2));
}

TEST(ModbusPlan, TearsNoOperand)
{
    const ModbusMap map = Flags("registers = 2\n");

    EXPECT_THAT(
        NamesAtOnce(map, {"MW0", "MD2", "MW6", "MW8", "MW1"}),
        ElementsAre("MW0 MW1", "MD2", "MW6 MW8"));
}

TEST(ModbusPlan, KeepsToTheLimits)
{
    const ModbusMap map = MapOf("[device]\nregisters = 3\nbits = 8\n"
                                "[range a]\noperands = MW0..MW98\ntable = input\nstart = 0\n"
                                "[range b]\noperands = E0.0..E9.7\ntable = discrete\nstart = 0\n");

    EXPECT_THAT(
        NamesAtOnce(map, {"MW0", "MW4", "MW6", "E0.0", "E0.7", "E1.0", "EB2"}),
        ElementsAre("MW0 MW4", "MW6", "E0.0 E0.7", "E1.0", "EB2"));
}

TEST(ModbusPlan, ReadsNothingBetweenTwoRanges)
{
    const ModbusMap map = MapOf("[range a]\noperands = MW0..MW8\ntable = holding\nstart = 0\n"
                                "[range b]\noperands = MW10..MW18\ntable = holding\nstart = 5\n");

    EXPECT_THAT(NamesAtOnce(map, {"MW8", "MW10"}), ElementsAre("MW8", "MW10"));
}

TEST(ModbusPlan, AsksForNothingWhenNothingIsWatched)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Words(3));
    plan.Watch({});

    EXPECT_THAT(plan.Blocks({}), IsEmpty());
}

TEST(ModbusPlan, FindsTheOneOperandThatTheDeviceRefuses)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Words(100));
    const Device device = Without({37});

    const Turn first = TurnOf(plan, device);
    const Turn second = TurnOf(plan, device);

    EXPECT_THAT(first.refused, ElementsAre("MW74"));
    EXPECT_THAT(first.read, SizeIs(99));
    EXPECT_LE(first.requests, 15U);
    EXPECT_THAT(second.refused, IsEmpty());
    EXPECT_THAT(second.read, SizeIs(99));
    EXPECT_EQ(second.requests, 2U);
    EXPECT_TRUE(plan.IsRefused(Named({"MW74"})[0]));
}

TEST(ModbusPlan, FindsEveryOperandThatTheDeviceRefuses)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Named({"MW0", "MD0", "MW2", "MW4", "MW6", "MD6", "MW8"}));
    const Device device = Without({1, 4});

    const Turn first = TurnOf(plan, device);
    const Turn second = TurnOf(plan, device);

    EXPECT_THAT(first.refused, UnorderedElementsAre("MD0", "MW2", "MD6", "MW8"));
    EXPECT_THAT(first.read, UnorderedElementsAre("MW0", "MW4", "MW6"));
    EXPECT_THAT(second.read, UnorderedElementsAre("MW0", "MW4", "MW6"));
    EXPECT_EQ(second.requests, 2U);
}

TEST(ModbusPlan, TriesARefusedOperandAloneEachMinute)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Words(3));
    const plclink::Clock::time_point begin{};
    TurnOf(plan, Without({1}), begin);

    EXPECT_THAT(Names(plan.Blocks(begin + 59s)), ElementsAre("MW0", "MW4"));
    EXPECT_THAT(Names(plan.Blocks(begin + 60s)), ElementsAre("MW0", "MW4", "MW2"));
    TurnOf(plan, Without({1}), begin + 60s);
    EXPECT_THAT(Names(plan.Blocks(begin + 119s)), ElementsAre("MW0", "MW4"));
    EXPECT_THAT(TurnOf(plan, Without({}), begin + 120s).refused, IsEmpty());
    EXPECT_THAT(Names(plan.Blocks(begin + 121s)), ElementsAre("MW0 MW2 MW4"));
}

TEST(ModbusPlan, LearnsThatAGapCannotBeRead)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Named({"MW0", "MW2", "MW4", "MW20", "MW22", "MW24", "MW26"}));
    const Device device = Without({5});

    Turn turn = TurnOf(plan, device);
    EXPECT_THAT(turn.refused, IsEmpty());
    EXPECT_THAT(turn.read, SizeIs(7));
    turn = TurnOf(plan, device);
    EXPECT_EQ(turn.requests, 2U);
    EXPECT_THAT(turn.read, SizeIs(7));
}

TEST(ModbusPlan, GetsAlongWithADeviceThatTakesLessInOneRequestThanTheMapSays)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Words(100));
    const Device device = [](const ModbusSpan& span) { return span.Count() <= 32; };

    Turn turn = TurnOf(plan, device);
    EXPECT_THAT(turn.refused, IsEmpty());
    EXPECT_THAT(turn.read, SizeIs(100));
    TurnOf(plan, device);
    turn = TurnOf(plan, device);
    EXPECT_EQ(turn.requests, 4U);
    EXPECT_THAT(turn.read, SizeIs(100));
}

TEST(ModbusPlan, RemembersARefusalWhileTheListChanges)
{
    const ModbusMap map = Flags();
    ModbusPlan plan(map);
    plan.Watch(Words(3));
    TurnOf(plan, Without({1}));

    plan.Watch(Named({"MW6", "MW0", "MW2"}));

    EXPECT_THAT(Names(plan.Blocks({})), ElementsAre("MW0", "MW6"));
    const std::vector<ModbusBlock> later = plan.Blocks(plclink::Clock::time_point{} + 60s);
    ASSERT_THAT(Names(later), ElementsAre("MW0", "MW6", "MW2"));
    EXPECT_EQ(later[2].items[0].place, 2U);
    plan.Watch(Named({"MW0"}));
    plan.Watch(Words(3));
    EXPECT_THAT(Names(plan.Blocks({})), ElementsAre("MW0 MW2 MW4"));
}

} // namespace
