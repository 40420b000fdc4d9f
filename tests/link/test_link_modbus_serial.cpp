#include "child.h"
#include "devicelink.h"
#include "modbusserver.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

// The link with devices on a serial line.

namespace {

using plclink::LinkStatus;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

/// Two ends of a serial line, and a device at one of them.
class SerialDevice : public testing::Test
{
protected:
    SerialDevice()
        : m_line(
              {"socat",
               "-d",
               "-d",
               "pty,raw,echo=0,link=" + m_folder.File("near"),
               "pty,raw,echo=0,link=" + m_folder.File("far")},
              2)
    {
        EXPECT_THAT(m_line.WaitForLine("starting data transfer loop"), Not(IsEmpty()));
        m_server = std::make_unique<ModbusServer>(
            std::vector<std::string>{"modbus_server.py", "rtu", m_folder.File("far")});
    }

    std::string Address() const { return "modbus-rtu:" + m_folder.File("near") + "?unit=1"; }

    TempDir m_folder;
    Child m_line;
    std::unique_ptr<ModbusServer> m_server;
};

TEST_F(SerialDevice, IsReadAndWritten)
{
    DeviceLink link(
        Address(),
        deviceSection + RangeOf("MW0..MW98", "holding", 0, "write = yes\n") +
            RangeOf("A0.0..A9.7", "coil", 0, "write = yes\n"));
    link.WaitForValues({{"MW4", 0x0405}, {"MD8", 0x08090A0B}, {"AB0", 0x49}});

    EXPECT_EQ(link.Write("MW4", 4711), "done");
    EXPECT_EQ(link.Write("M0.0", 1), "done");
    EXPECT_EQ(link.Write("A0.1", 1), "done");
    EXPECT_TRUE(link.Events().WaitForValue("MW4", 4711));
    EXPECT_TRUE(link.Events().WaitForValue("AB0", 0x4B));
}

TEST_F(SerialDevice, ThatWasStoppedAndContinuedNeverShowsAWrongValue)
{
    // Two blocks of the same size, whose answers cannot be told apart.
    DeviceLink link(
        Address(),
        deviceSection + RangeOf("MW0..MW18", "holding", 0) + RangeOf("EW0..EW18", "holding", 100));
    link.WaitForValues({{"MW0", 1}, {"EW0", 0xC8C9}});

    m_server->Process().Signal(SIGSTOP);
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    link.Events().ForgetValues();
    m_server->Process().Signal(SIGCONT);

    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
    EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().Values("EW0").size() > 9; }));
    EXPECT_THAT(link.Events().Values("MW0"), Each(1));
    EXPECT_THAT(link.Events().Values("EW0"), Each(0xC8C9));
}

} // namespace
