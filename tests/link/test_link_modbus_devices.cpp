#include "devicelink.h"
#include "mbpoll.h"
#include "modbusserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <netinet/in.h>
#include <numeric>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

// The link with devices that others have written: what is read and written.

namespace {

using plclink::LinkStatus;
using testing::Each;
using testing::Ge;
using testing::HasSubstr;

/// Whether this machine talks to itself by version 6 of the protocol.
/// Where a kernel runs without version 6, as in many a container, there is no such device to reach.
bool HasLoopbackOfVersion6()
{
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    const int file = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool has = ::bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(file);
    return has;
}

TEST(ModbusDevice, IsReachedByAnAddressOfVersion6)
{
    if (!HasLoopbackOfVersion6()) {
        GTEST_SKIP() << "this machine has no address ::1";
    }
    const ModbusServer server({"modbus_server.py", "tcp", "0", "--host", "::1"});
    DeviceLink link(
        "modbus://[::1]:" + server.Port() + "/1",
        deviceSection + RangeOf("MW0..MW98", "holding", 0, "write = yes\n"));
    link.ExpectValues({{"MW4", 0x0405}});

    EXPECT_EQ(link.Write("MW4", 4711), "done");
}

TEST(ModbusDevice, IsAskedNoSoonerThanTheMapSays)
{
    ModbusServer server({"modbus_server.py", "tcp", "0", "--times"});
    DeviceLink link(
        TcpAddress(server.Port()),
        "[device]\npoll = 20\napart = 50\n" + RangeOf("MW0..MW98", "holding", 0) +
            RangeOf("EW0..EW18", "input", 0) + RangeOf("A0.0..A9.7", "coil", 0));
    link.Watch({"MW0", "EW0", "A0.0"});

    // The device takes each time before it answers, and the link waits from the answer on.
    std::vector<double> times(10);
    for (double& time : times) {
        time = std::stod(server.Process().WaitForLine("asked ").substr(6));
    }
    std::vector<double> apart(times.size());
    std::adjacent_difference(times.begin(), times.end(), apart.begin());
    apart.erase(apart.begin()); // which is no difference
    EXPECT_THAT(apart, Each(Ge(0.050)));
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
    EXPECT_THAT(MbpollRead(server.Port(), holding, 0, 2), testing::ElementsAre(257, 712));
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
