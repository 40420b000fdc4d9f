#include "plcwatch_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace plcwatch {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

using Parsed = std::variant<Options, ExitStatus>;

Parsed Parse(std::vector<const char*> words)
{
    words.insert(words.begin(), "plcwatch");
    return ParseOptions(static_cast<int>(words.size()), words.data());
}

/// What was said while a wrong command line was refused; empty when it was not refused.
std::string Refusal(const std::vector<const char*>& words)
{
    testing::internal::CaptureStderr();
    const Parsed parsed = Parse(words);
    const std::string said = testing::internal::GetCapturedStderr();
    const auto* const status = std::get_if<ExitStatus>(&parsed);
    return status != nullptr && *status == exitUsage ? said : "";
}

TEST(PlcwatchOptions, TakesAListAndHowToWatchIt)
{
    const Parsed parsed = Parse(
        {"a.plc",
         "--machine",
         "soft:lift",
         "--every",
         "250ms",
         "--for",
         "1.5",
         "--once",
         "--json",
         "--clock",
         "--plain"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.list, "a.plc");
    EXPECT_EQ(options.machine, "soft:lift");
    EXPECT_EQ(std::get<plclink::SampleAddress>(options.address).name, "lift");
    EXPECT_EQ(options.every, 250ms);
    EXPECT_EQ(options.limit, 1500ms);
    EXPECT_TRUE(options.once && options.json && options.clock && options.plain);
}

TEST(PlcwatchOptions, TakesADeviceWithItsMap)
{
    const Parsed parsed =
        Parse({"a.plc", "--machine", "modbus://oven.local:1502/7", "--map", "oven.map"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    const auto& device = std::get<plclink::ModbusAddress>(options.address);
    EXPECT_EQ(std::get<plclink::ModbusTcp>(device).host, "oven.local");
    EXPECT_EQ(options.map, "oven.map");
}

TEST(PlcwatchOptions, RefusesADeviceWithoutAMapAndAMapWithoutADevice)
{
    EXPECT_THAT(
        Refusal({"a.plc", "--machine", "modbus://oven/1"}),
        HasSubstr("\"modbus://oven/1\" needs a map of its operands: --map FILE"));
    EXPECT_THAT(
        Refusal({"a.plc", "--machine", "soft:lift", "--map", "oven.map"}),
        HasSubstr("\"soft:lift\" needs no map"));
    EXPECT_THAT(
        Refusal({"a.plc", "--machine", "modbus://oven", "--map", "oven.map"}),
        HasSubstr("there is no unit; the right form is modbus://HOST[:PORT]/UNIT"));
}

TEST(PlcwatchOptions, LooksTenTimesASecondUntilItIsInterrupted)
{
    const Parsed parsed = Parse({"a.plc", "--machine", "soft:lift"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    EXPECT_EQ(std::get<Options>(parsed).every, 100ms);
    EXPECT_FALSE(std::get<Options>(parsed).limit);
}

TEST(PlcwatchOptions, TakesAValueInItsFormat)
{
    const Parsed parsed = Parse({"--machine", "soft:lift", "--write", "MW20=-1", "--format", "D"});
    const Parsed hexadecimal =
        Parse({"--machine", "soft:lift", "--write", "MB20=1F", "--format", "H"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    EXPECT_EQ(std::get<Options>(parsed).write->value, 0xFFFFFFFFU);
    ASSERT_TRUE(std::holds_alternative<Options>(hexadecimal));
    EXPECT_EQ(std::get<Options>(hexadecimal).write->value, 0x1FU);
}

TEST(PlcwatchOptions, RefusesWhatIsWrong)
{
    EXPECT_THAT(Refusal({"a.plc"}), HasSubstr("--machine"));
    EXPECT_THAT(Refusal({"a.plc", "--machine", "lift"}), HasSubstr("soft:FILE.il"));
    EXPECT_THAT(Refusal({"--machine", "soft:lift"}), HasSubstr("one of LIST, --read and --write"));
    EXPECT_THAT(
        Refusal({"a.plc", "--machine", "soft:lift", "--read", "MW20"}),
        HasSubstr("one of LIST, --read and --write"));
    EXPECT_THAT(Refusal({"--machine", "soft:lift", "--read", "XY"}), HasSubstr("\"XY\""));
    EXPECT_THAT(Refusal({"--machine", "soft:lift", "--write", "MW20"}), HasSubstr("MW20=17"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--write", "MW20=70000"}), HasSubstr("MW20=70000"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--read", "MW20", "--format", "X"}),
        HasSubstr("--format"));
    EXPECT_THAT(Refusal({"a.plc", "--machine", "soft:lift", "--for", "x"}), HasSubstr("10s"));
    EXPECT_THAT(Refusal({"a.plc", "--machine", "soft:lift", "--every", "1ms"}), HasSubstr("10ms"));
}

TEST(PlcwatchOptions, WatchesAMachineFarAway)
{
    const Parsed parsed =
        Parse({"a.plc", "--machine", "mqtts://service@broker/hall1/press7", "--insecure"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(std::get<plclink::MqttAddress>(options.address).machine, "press7");
    EXPECT_TRUE(options.access.mayBeOpen);
}

TEST(PlcwatchOptions, ListsTheMachinesOfAPlantAndNothingElseBeside)
{
    const char* const plant = "mqtts://service@broker/hall1";
    const Parsed parsed = Parse({"--machines", plant});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    ASSERT_TRUE(std::get<Options>(parsed).plant);
    EXPECT_EQ(std::get<Options>(parsed).plant->plant, "hall1");
    EXPECT_THAT(Refusal({"a.plc", "--machines", plant}), HasSubstr("stands alone"));
    EXPECT_THAT(
        Refusal({"--machines", plant, "--machine", "soft:lift"}), HasSubstr("stands alone"));
    EXPECT_THAT(
        Refusal({"--machines", "mqtts://service@broker/hall1/press7"}),
        HasSubstr("mqtts://USER@BROKER[:PORT]/PLANT"));
}

TEST(PlcwatchOptions, RefusesABrokersOptionsWithoutABroker)
{
    EXPECT_THAT(
        Refusal({"a.plc", "--machine", "soft:lift", "--insecure"}), HasSubstr("--insecure"));
}

TEST(PlcwatchOptions, HelpTellsEveryStatus)
{
    testing::internal::CaptureStdout();
    const Parsed parsed = Parse({"--help"});
    const std::string help = testing::internal::GetCapturedStdout();

    ASSERT_TRUE(std::holds_alternative<ExitStatus>(parsed));
    EXPECT_EQ(std::get<ExitStatus>(parsed), exitGood);
    EXPECT_THAT(help, HasSubstr("5  a value was not written"));
}

TEST(ParseDuration, KnowsItsUnits)
{
    EXPECT_EQ(ParseDuration("100ms"), 100ms);
    EXPECT_EQ(ParseDuration("10s"), 10s);
    EXPECT_EQ(ParseDuration("2"), 2s);
    EXPECT_EQ(ParseDuration("0.5min"), 30s);
    for (const char* wrong : {"", "s", "-1s", "1h", "nan", "1e300", "1 s", "0x10"}) {
        EXPECT_FALSE(ParseDuration(wrong)) << wrong;
    }
}

} // namespace
} // namespace plcwatch
