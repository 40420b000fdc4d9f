#include "address.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plclink {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// What an address says, as "sample lift".
std::string Read(const std::string& text)
{
    struct
    {
        std::string operator()(const SampleAddress& address) { return "sample " + address.name; }

        std::string operator()(const ProgramAddress& address) { return "program " + address.file; }

        std::string operator()(const RecordingAddress& address)
        {
            return "recording " + address.file;
        }

        std::string operator()(const ModbusAddress& address)
        {
            return std::holds_alternative<ModbusTcp>(address) ? "network" : "serial line";
        }

        std::string operator()(const MqttAddress& address)
        {
            return "broker " + address.plant + ' ' + address.machine;
        }
    } name;

    const auto address = ParseAddress(text);
    return address ? std::visit(name, *address) : address.Message();
}

TEST(ParseAddress, KnowsTheSamplesByName)
{
    for (const char* name : {"bottling", "crossing", "instructions", "lift", "mixer"}) {
        EXPECT_EQ(Read(std::string("soft:") + name), std::string("sample ") + name);
    }
}

TEST(ParseAddress, TakesAStatementListByItsPath)
{
    EXPECT_EQ(Read("soft:lathe.il"), "program lathe.il");
    EXPECT_EQ(Read("soft:/home/me/a:b.il"), "program /home/me/a:b.il");
    EXPECT_EQ(Read("soft:./lift"), "program ./lift");
}

TEST(ParseAddress, TakesARecordingByItsPath)
{
    EXPECT_EQ(Read("recording:run.rec"), "recording run.rec");
    EXPECT_EQ(Read("recording:run"), "recording run");
}

TEST(ParseAddress, TakesAMachineBehindABroker)
{
    EXPECT_EQ(Read("mqtts://service@broker/hall1/press7"), "broker hall1 press7");
    EXPECT_THAT(Read("mqtts://broker"), HasSubstr("the right form is mqtts://"));
}

TEST(ParseAddress, TakesADeviceOnTheNetworkAndOnASerialLine)
{
    EXPECT_EQ(Read("modbus://oven:1502/7"), "network");
    EXPECT_EQ(Read("modbus-rtu:/dev/ttyUSB0?unit=3"), "serial line");
    EXPECT_THAT(Read("modbus://oven"), HasSubstr("the right form is modbus://HOST[:PORT]/UNIT"));
}

TEST(MapError, ADeviceNeedsAMapAndNothingElseHasOne)
{
    EXPECT_EQ(MapError("modbus://oven/1", "oven.map"), "");
    EXPECT_EQ(MapError("soft:lift", ""), "");
    EXPECT_EQ(
        MapError("modbus-rtu:/dev/ttyUSB0", ""),
        "\"modbus-rtu:/dev/ttyUSB0\" needs a map of its operands: --map FILE");
    EXPECT_EQ(
        MapError("soft:lift", "oven.map"), "\"soft:lift\" needs no map, a Modbus device does");
}

TEST(ParseAddress, SaysWhatIsWrongAndTheRightForm)
{
    for (const char* text : {"", "bottling", "soft", "soft:", "recording:", "Soft:lift", "ftp:x"}) {
        EXPECT_THAT(
            Read(text),
            AllOf(
                HasSubstr('"' + std::string(text) + "\" is no address"),
                HasSubstr("soft:FILE.il; recording:FILE")));
    }
    EXPECT_THAT(
        Read("soft:lathe"),
        AllOf(HasSubstr("there is no machine \"soft:lathe\""), HasSubstr("lift, mixer")));
}

} // namespace
} // namespace plclink
