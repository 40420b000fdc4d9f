#include "child.h"
#include "devicelink.h"
#include "modbusserver.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

// The link with devices on a serial line.

namespace {

using plclink::LinkStatus;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

std::string TwoRanges()
{
    return deviceSection + RangeOf("MW0..MW18", "holding", 0) +
           RangeOf("EW0..EW18", "holding", 100);
}

/// Two ends of a serial line.
class SerialLine : public testing::Test
{
public:
    ~SerialLine() override
    {
        ::close(m_near);
        ::close(m_far);
    }

    SerialLine(const SerialLine&) = delete;
    SerialLine(SerialLine&&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    SerialLine& operator=(SerialLine&&) = delete;

protected:
    SerialLine()
        : m_line(
              {"socat",
               "-d",
               "-d",
               "pty,raw,echo=0,link=" + m_folder.File("near"),
               "pty,raw,echo=0,link=" + m_folder.File("far")},
              2)
    {
        EXPECT_THAT(m_line.WaitForLine("starting data transfer loop"), Not(IsEmpty()));
        m_near = ::open(m_folder.File("near").c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        m_far = ::open(m_folder.File("far").c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }

    std::string Address() const { return "modbus-rtu:" + m_folder.File("near") + "?unit=1"; }

    std::string FarEnd() const { return m_folder.File("far"); }

    /// Sends bytes to the link, beside those of the device.
    void DisturbAnswers(const std::string& bytes) const { Send(m_far, bytes); }

    /// Sends bytes to the device, beside those of the link.
    void DisturbRequests(const std::string& bytes) const { Send(m_near, bytes); }

private:
    static void Send(int file, const std::string& bytes)
    {
        EXPECT_EQ(::write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    TempDir m_folder;
    Child m_line;
    // Open all the time: the line ends with the last who has it open.
    int m_near = -1;
    int m_far = -1;
};

/// A device at one end of the line.
class SerialDevice : public SerialLine
{
protected:
    SerialDevice() { Start(); }

    /// Starts it, again when there is one.
    void Start()
    {
        m_server.reset();
        m_server.emplace(std::vector<std::string>{"modbus_server.py", "rtu", FarEnd()});
    }

    ModbusServer& Server() { return *m_server; }

    void End() { m_server.reset(); }

private:
    std::optional<ModbusServer> m_server;
};

TEST_F(SerialDevice, IsReadAndWritten)
{
    DeviceLink link(
        Address(),
        deviceSection + RangeOf("MW0..MW98", "holding", 0, "write = yes\n") +
            RangeOf("A0.0..A9.7", "coil", 0, "write = yes\n"));
    link.ExpectValues({{"MW4", 0x0405}, {"MD8", 0x08090A0B}, {"AB0", 0x49}});

    EXPECT_EQ(link.Write("MW4", 4711), "done");
    EXPECT_EQ(link.Write("M0.0", 1), "done");
    EXPECT_EQ(link.Write("A0.1", 1), "done");
    EXPECT_TRUE(link.Events().WaitForValue("MW4", 4711));
    EXPECT_TRUE(link.Events().WaitForValue("AB0", 0x4B));
}

/// Of two blocks of the same size, whose answers cannot be told apart.
void ExpectOnlyTruth(DeviceLink& link)
{
    const std::size_t enough = link.Events().Values("EW0").size() + 9;
    EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().Values("EW0").size() > enough; }));
    EXPECT_THAT(link.Events().Values("MW0"), Each(1));
    EXPECT_THAT(link.Events().Values("EW0"), Each(0xC8C9));
}

TEST_F(SerialDevice, ThatWasStoppedAndContinuedNeverShowsAWrongValue)
{
    DeviceLink link(Address(), TwoRanges());
    link.ExpectValues({{"MW0", 1}, {"EW0", 0xC8C9}});

    Server().Process().Signal(SIGSTOP);
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    link.Events().ForgetValues();
    Server().Process().Signal(SIGCONT);

    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
    ExpectOnlyTruth(link);
}

TEST_F(SerialDevice, ThatWasKilledAndStartedAgainIsFoundAgain)
{
    DeviceLink link(Address(), TwoRanges());
    link.ExpectValues({{"MW0", 1}, {"EW0", 0xC8C9}});

    End();
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    Start();

    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
    ExpectOnlyTruth(link);
}

/// What a line without a shield may bring: single bytes, the beginning of an answer, a flood.
std::vector<std::string> Noises()
{
    using namespace std::string_literals;
    return {"\0"s, "\xFF"s, "\x01\x03\x14"s, std::string(300, '\x01')};
}

TEST_F(SerialDevice, OnALineThatDisturbsAnswersNeverShowsAWrongValue)
{
    for (const std::string& noise : Noises()) {
        DeviceLink link(Address(), TwoRanges());
        link.ExpectValues({{"MW0", 1}, {"EW0", 0xC8C9}});

        DisturbAnswers(noise);

        EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().HasBeenLost(); }));
        EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
        ExpectOnlyTruth(link);
    }
}

TEST_F(SerialDevice, OnALineThatDisturbsRequestsNeverShowsAWrongValue)
{
    for (const std::string& noise : Noises()) {
        DeviceLink link(Address(), TwoRanges());
        link.ExpectValues({{"MW0", 1}, {"EW0", 0xC8C9}});

        DisturbRequests(noise); // behind which a device may find the request all the same

        ExpectOnlyTruth(link);
    }
}

/// A device at one end of the line that misbehaves in one way.
class MisbehavingSerialDevice : public SerialLine, public testing::WithParamInterface<const char*>
{
};

TEST_P(MisbehavingSerialDevice, NeverShowsAWrongValue)
{
    const ModbusServer server({"misbehaving_server.py", GetParam(), FarEnd()});
    DeviceLink link(Address(), deviceSection + RangeOf("MW0..MW98", "holding", 0));

    link.ExpectTheTruthAtLast();
}

INSTANTIATE_TEST_SUITE_P(
    Ways,
    MisbehavingSerialDevice,
    testing::Values(
        "silence",
        "garbage",
        "much_garbage",
        "half_an_answer",
        "wrong_checksum",
        "another_unit",
        "another_function",
        "another_count",
        "more_registers",
        "fewer_registers",
        "more_bytes",
        "two_answers",
        "byte_by_byte"),
    [](const auto& way) { return std::string(way.param); });

} // namespace
