#include "child.h"
#include "devicelink.h"
#include "modbusserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

// The link with devices that others have written: what is read and written.

namespace {

using plclink::LinkStatus;
using testing::HasSubstr;

/// What mbpoll reads at a protocol address, or has to say of a write.
std::string
Mbpoll(const std::string& port, const std::string& table, int address, const std::string& value)
{
    std::vector<std::string> command{
        "mbpoll",
        "-0",
        "-1",
        "-q",
        "-m",
        "tcp",
        "-p",
        port,
        "-a",
        "1",
        "-t",
        table,
        "-r",
        std::to_string(address),
        "127.0.0.1"};
    if (!value.empty()) {
        command.push_back(value);
    }
    return Child(command).WaitForEnd();
}

/// mbpoll's names of the tables.
const char* const coils = "0";
const char* const holding = "4";

TEST(ModbusDevice, TellsEveryKindOfOperandInEveryTable)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(
        TcpAddress(server.Port()),
        deviceSection + RangeOf("MW0..MW98", "holding", 0) + RangeOf("EB0..EB7", "input", 5) +
            RangeOf("T0..T9", "holding", 100) + RangeOf("Z0..Z9", "input", 100) +
            RangeOf("A0.0..A9.7", "coil", 0) + RangeOf("AB10..AB17", "discrete", 0) +
            RangeOf("DB10.DBW0..DB10.DBW98", "holding", 200));

    link.WaitForValues(
        {{"MW4", 0x0405},
         {"MW5", 0x0506},
         {"MD8", 0x08090A0B},
         {"MD9", 0x090A0B0C},
         {"MB7", 7},
         {"M7.2", 1},
         {"M7.3", 0},
         {"MW98", 0x6263},
         {"EB0", 0xF5},
         {"EW0", 0xF5F4},
         {"ED4", 0xF1F0EFEE},
         {"E1.0", 0},
         {"T9", 0xDADB},
         {"Z0", 0x3736},
         {"A0.0", 1},
         {"A0.1", 0},
         {"A1.1", 1},
         {"AB0", 0x49},
         {"AW0", 0x4992},
         {"AD0", 0x49922449},
         {"A10.1", 1},
         {"AB10", 0x92},
         {"DB10.DBX2.0", 0},
         {"DB10.DBX3.0", 1},
         {"DB10.DBB2", 0x92},
         {"DB10.DBW4", 0x9495},
         {"DB10.DBD4", 0x94959697}});
}

TEST(ModbusDevice, IsReadAndWrittenInEveryOrder)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});

    const struct
    {
        const char* bytes;
        const char* words;
        std::uint32_t value;
    } orders[] = {
        {"high-first", "high-first", 0x00010203},
        {"high-first", "low-first", 0x02030001},
        {"low-first", "high-first", 0x01000302},
        {"low-first", "low-first", 0x03020100}};

    for (const auto& [bytes, words, value] : orders) {
        DeviceLink link(
            TcpAddress(server.Port()),
            deviceSection +
                RangeOf(
                    "MW0..MW98",
                    "holding",
                    0,
                    std::string("write = yes\nbytes = ") + bytes + "\nwords = " + words + "\n"));
        link.WaitForValues({{"MD0", value}});
        EXPECT_EQ(link.Write("MD0", 0x12345678), "done");
        EXPECT_EQ(link.Write("MD0", value), "done");
    }
    EXPECT_THAT(Mbpoll(server.Port(), holding, 0, ""), HasSubstr("\t1\n"));
    EXPECT_THAT(Mbpoll(server.Port(), holding, 1, ""), HasSubstr("\t515\n"));
}

TEST(ModbusDevice, HasWhatWasWrittenAsAnotherClientSeesIt)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(
        TcpAddress(server.Port()),
        deviceSection + RangeOf("MW0..MW98", "holding", 0, "write = yes\n") +
            RangeOf("T0..T9", "holding", 100, "write = yes\n") +
            RangeOf("A0.0..A9.7", "coil", 0, "write = yes\n"));
    link.Watch({"MW0"});

    EXPECT_EQ(link.Write("MW0", 1234), "done");
    EXPECT_EQ(link.Write("MD4", 0x00010002), "done");
    EXPECT_EQ(link.Write("MB8", 1), "done");
    EXPECT_EQ(link.Write("M9.7", 1), "done");
    EXPECT_EQ(link.Write("T3", 250), "done");
    EXPECT_EQ(link.Write("A0.1", 1), "done");
    EXPECT_EQ(link.Write("AW2", 0xFFFF), "done");

    const std::string& port = server.Port();
    EXPECT_THAT(Mbpoll(port, holding, 0, ""), HasSubstr("\t1234\n"));
    EXPECT_THAT(Mbpoll(port, holding, 2, ""), HasSubstr("\t1\n"));
    EXPECT_THAT(Mbpoll(port, holding, 3, ""), HasSubstr("\t2\n"));
    EXPECT_THAT(Mbpoll(port, holding, 4, ""), HasSubstr("\t393\n")); // 01 09 with bit 7: 01 89
    EXPECT_THAT(Mbpoll(port, holding, 103, ""), HasSubstr("\t250\n"));
    EXPECT_THAT(Mbpoll(port, coils, 1, ""), HasSubstr("\t1\n"));
    EXPECT_THAT(Mbpoll(port, coils, 16, ""), HasSubstr("\t1\n"));
    EXPECT_THAT(Mbpoll(port, coils, 31, ""), HasSubstr("\t1\n"));
}

TEST(ModbusDevice, TellsWhatAnotherClientHasWritten)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(TcpAddress(server.Port()), deviceSection + RangeOf("MW0..MW98", "holding", 0));
    link.WaitForValues({{"MW20", 0x1415}});

    EXPECT_THAT(Mbpoll(server.Port(), holding, 10, "4711"), HasSubstr("Written 1 references"));

    EXPECT_TRUE(link.Events().WaitForValue("MW20", 4711));
}

TEST(ModbusDevice, WithoutMaskWriteTakesBitsOnlyWhenTheMapAllowsIt)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0", "--no-mask-write"});
    const std::string address = TcpAddress(server.Port());
    {
        DeviceLink link(
            address, deviceSection + RangeOf("MW0..MW98", "holding", 0, "write = yes\n"));
        link.Watch({});
        EXPECT_THAT(
            link.Write("M0.0", 1),
            HasSubstr("the device has no mask write (function 22); bits-by = read-modify-write"));
    }
    DeviceLink link(
        address,
        deviceSection +
            RangeOf("MW0..MW98", "holding", 0, "write = yes\nbits-by = read-modify-write\n"));
    link.Watch({});
    EXPECT_EQ(link.Write("M0.0", 1), "done");
    EXPECT_EQ(link.Write("MB3", 200), "done");
    EXPECT_THAT(Mbpoll(server.Port(), holding, 0, ""), HasSubstr("\t257\n"));
    EXPECT_THAT(Mbpoll(server.Port(), holding, 1, ""), HasSubstr("\t712\n"));
}

TEST(ModbusDevice, IsReadAroundWhatItRefuses)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(
        TcpAddress(server.Port()), deviceSection + RangeOf("DB1.DBW0..DB1.DBW200", "holding", 950));
    link.Watch({"DB1.DBW0", "DB1.DBW98", "DB1.DBW100", "DB1.DBD98"});

    EXPECT_TRUE(link.Events().WaitForValue("DB1.DBW98", 0xCECF));
    EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().Unreadable().size() == 2; }));
    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
}

} // namespace
