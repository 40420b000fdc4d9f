#include "devicelink.h"
#include "modbusserver.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

// The link with devices that are away for a while, and with some that nobody would want.

namespace {

using plclink::LinkStatus;
using testing::Each;
using testing::HasSubstr;

TEST(ModbusDevice, ThatWasStoppedAndContinuedNeverShowsAWrongValue)
{
    ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(
        TcpAddress(server.Port()),
        deviceSection + RangeOf("MW0..MW98", "holding", 0) + RangeOf("EW0..EW18", "holding", 100));
    link.ExpectValues({{"MW0", 1}, {"EW0", 0xC8C9}});

    server.Process().Signal(SIGSTOP);
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    EXPECT_EQ(link.Events().State().reason, "no answer within 300 ms");
    link.Events().ForgetValues();
    server.Process().Signal(SIGCONT);

    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
    EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().Values("EW0").size() > 9; }));
    EXPECT_THAT(link.Events().Values("MW0"), Each(1));
    EXPECT_THAT(link.Events().Values("EW0"), Each(0xC8C9));
}

TEST(ModbusDevice, ThatWasKilledAndStartedAgainIsFoundAgain)
{
    auto server =
        std::make_unique<ModbusServer>(std::vector<std::string>{"modbus_server.py", "tcp", "0"});
    const std::string port = server->Port();
    DeviceLink link(TcpAddress(port), deviceSection + RangeOf("MW0..MW98", "holding", 0));
    link.ExpectValues({{"MW0", 1}});

    server.reset();
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    link.Events().ForgetValues();
    server =
        std::make_unique<ModbusServer>(std::vector<std::string>{"modbus_server.py", "tcp", port});

    EXPECT_TRUE(link.Events().WaitForValue("MW0", 1));
    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
}

TEST(ModbusDevice, ThatCannotBeReachedIsLostWithTheReason)
{
    const auto map = deviceSection + RangeOf("MW0..MW98", "holding", 0);
    DeviceLink nobody("modbus://127.0.0.1:1/1", map);
    nobody.Watch({"MW0"});
    EXPECT_TRUE(nobody.Events().WaitForStatus(LinkStatus::Lost));
    EXPECT_EQ(nobody.Events().State().reason, "not connected: Connection refused");

    DeviceLink nameless("modbus://no-such-host.invalid/1", map);
    nameless.Watch({"MW0"});
    EXPECT_TRUE(nameless.Events().WaitForStatus(LinkStatus::Lost));
    EXPECT_THAT(
        nameless.Events().State().reason, HasSubstr("the name no-such-host.invalid is not"));

    const TempDir folder;
    const std::string file = folder.Write("file", "mine");
    for (const std::string& path : {file, std::string("/dev/null")}) {
        DeviceLink line("modbus-rtu:" + path, map);
        line.Watch({"MW0"});
        EXPECT_TRUE(line.Events().WaitForStatus(LinkStatus::Lost));
        EXPECT_EQ(line.Events().State().reason, path + " is no serial line");
    }
    EXPECT_EQ(folder.Read("file"), "mine");
}

class MisbehavingDevice : public testing::TestWithParam<const char*>
{
};

TEST_P(MisbehavingDevice, NeverShowsAWrongValue)
{
    const ModbusServer server({"misbehaving_server.py", GetParam()});
    DeviceLink link(TcpAddress(server.Port()), deviceSection + RangeOf("MW0..MW98", "holding", 0));

    link.ExpectTheTruthAtLast();
}

INSTANTIATE_TEST_SUITE_P(
    Ways,
    MisbehavingDevice,
    testing::Values(
        "silence",
        "garbage",
        "much_garbage",
        "half_an_answer",
        "only_a_header",
        "another_request",
        "an_earlier_request",
        "another_protocol",
        "another_unit",
        "another_length",
        "another_count",
        "another_function",
        "more_registers",
        "fewer_registers",
        "more_bytes",
        "two_answers",
        "an_answer_and_the_next",
        "byte_by_byte",
        "hanging_up"),
    [](const auto& way) { return std::string(way.param); });

} // namespace
