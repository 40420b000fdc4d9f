#include "modbus_address.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using plclink::ModbusRtu;
using plclink::ModbusTcp;
using plclink::ParseModbusAddress;
using testing::HasSubstr;
using testing::StartsWith;

/// "HOST PORT UNIT", or what is wrong.
std::string Tcp(const std::string& text)
{
    const auto address = ParseModbusAddress(text);
    if (!address) {
        return address.Message();
    }
    const auto* const tcp = std::get_if<ModbusTcp>(&*address);
    return tcp == nullptr ? "" : tcp->host + " " + tcp->port + " " + std::to_string(tcp->unit);
}

/// "DEVICE BAUD PARITY STOP UNIT", or what is wrong.
std::string Rtu(const std::string& text)
{
    const auto address = ParseModbusAddress(text);
    if (!address) {
        return address.Message();
    }
    const auto* const rtu = std::get_if<ModbusRtu>(&*address);
    return rtu == nullptr
               ? ""
               : rtu->device + " " + std::to_string(rtu->baud) + " " + rtu->parity + " " +
                     std::to_string(rtu->stopBits) + " " + std::to_string(rtu->unit);
}

TEST(ParseModbusAddress, ReadsHostPortAndUnit)
{
    EXPECT_EQ(Tcp("modbus://oven.local/1"), "oven.local 502 1");
    EXPECT_EQ(Tcp("modbus://192.168.0.7:1502/247"), "192.168.0.7 1502 247");
    EXPECT_EQ(Tcp("modbus://[::1]/0"), "::1 502 0");
    EXPECT_EQ(Tcp("modbus://[fe80::1%eth0]:65535/255"), "fe80::1%eth0 65535 255");
}

TEST(ParseModbusAddress, ReadsTheSettingsOfASerialLine)
{
    EXPECT_EQ(Rtu("modbus-rtu:/dev/ttyUSB0"), "/dev/ttyUSB0 19200 E 1 1");
    EXPECT_EQ(
        Rtu("modbus-rtu:/dev/ttyS1?baud=9600&parity=N&stop=2&unit=17"), "/dev/ttyS1 9600 N 2 17");
    EXPECT_EQ(Rtu("modbus-rtu:/dev/ttyS1?unit=2&parity=O"), "/dev/ttyS1 19200 O 1 2");
}

TEST(ParseModbusAddress, SaysWhatIsWrongAndTheRightForm)
{
    EXPECT_EQ(
        Tcp("modbus://oven"),
        "\"modbus://oven\": there is no unit; the right form is modbus://HOST[:PORT]/UNIT");
    for (const char* address :
         {"modbus:oven/1",
          "modbus:///1",
          "modbus://:502/1",
          "modbus://oven:/1",
          "modbus://oven:0/1",
          "modbus://oven:65536/1",
          "modbus://oven:x/1",
          "modbus://oven/",
          "modbus://oven/248",
          "modbus://oven/-1",
          "modbus://oven/1x",
          "modbus://::1/1",
          "modbus://[::1/1",
          "modbus://[]/1",
          "modbus://[::1]x/1",
          "modbus://oven/1/2",
          "http://oven/1"}) {
        EXPECT_THAT(Tcp(address), HasSubstr("the right form is modbus://HOST[:PORT]/UNIT"))
            << address;
    }
    EXPECT_EQ(
        Rtu("modbus-rtu:/dev/ttyS0?baud=1"),
        "\"modbus-rtu:/dev/ttyS0?baud=1\": there is no baud rate \"1\"; the right form is "
        "modbus-rtu:DEVICE?baud=19200&parity=E&stop=1&unit=1");
    for (const char* settings :
         {"?parity=e",
          "?parity=",
          "?stop=3",
          "?unit=0",
          "?unit=248",
          "?unit",
          "?x=1",
          "?&",
          "?="}) {
        EXPECT_THAT(
            Rtu(std::string("modbus-rtu:/dev/ttyS0") + settings), StartsWith("\"modbus-rtu"))
            << settings;
    }
    EXPECT_THAT(Rtu("modbus-rtu:?unit=1"), HasSubstr("there is no device"));
}

TEST(IsModbusAddress, KnowsItsTwoSchemes)
{
    EXPECT_TRUE(plclink::IsModbusAddress("modbus:"));
    EXPECT_TRUE(plclink::IsModbusAddress("modbus-rtu:/dev/ttyS0"));
    EXPECT_FALSE(plclink::IsModbusAddress("soft:bottling"));
    EXPECT_FALSE(plclink::IsModbusAddress("modbusx:"));
}

} // namespace
