#include "child.h"
#include "modbus_connection.h"
#include "modbus_source.h"
#include "sourceevents.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <vector>

// The link with devices that others have written, and with some that nobody would want.

namespace {

using plclink::LinkStatus;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

plc::Operand Named(const std::string& name)
{
    const auto operand = plc::ParseOperand(name);
    EXPECT_TRUE(operand) << name;
    return operand.value_or(plc::Operand{});
}

/// One of the servers in this folder, which has said that it is ready.
class Server
{
public:
    explicit Server(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> command{"/usr/bin/python3", LINK_TESTS "/" + arguments.at(0)};
        command.insert(command.end(), arguments.begin() + 1, arguments.end());
        m_child = std::make_unique<Child>(command);
        const std::string ready = m_child->WaitForLine("ready ");
        EXPECT_THAT(ready, Not(IsEmpty()));
        m_port = ready.substr(ready.find(' ') + 1);
    }

    const std::string& Port() const { return m_port; }

    Child& Process() { return *m_child; }

private:
    std::unique_ptr<Child> m_child;
    std::string m_port;
};

/// The link with one device.
class Link
{
public:
    Link(const std::string& address, const std::string& map)
    {
        plclink::MapReading reading = plclink::ReadModbusMap(map);
        EXPECT_TRUE(reading.map);
        const auto parsed = plclink::ParseModbusAddress(address);
        EXPECT_TRUE(parsed);
        m_source = std::make_unique<plclink::ModbusSource>(
            *reading.map, plclink::MakeModbusConnection(*parsed, *reading.map));
    }

    void Watch(const std::vector<std::string>& names)
    {
        plclink::WatchList list;
        for (const std::string& name : names) {
            list.push_back(Named(name));
        }
        m_source->Watch(std::make_shared<const plclink::WatchList>(list));
        if (!m_isStarted) {
            m_source->Start(m_events);
            m_isStarted = true;
        }
    }

    /// What comes of a write.
    std::string Write(const std::string& name, std::uint32_t value)
    {
        const auto end = std::make_shared<std::promise<std::string>>();
        m_source->Write(Named(name), value, [end](const base::Result<void>& done) {
            end->set_value(done ? "done" : done.Message());
        });
        return end->get_future().get();
    }

    RecordedEvents& Events() { return m_events; }

private:
    RecordedEvents m_events;
    std::unique_ptr<plclink::ModbusSource> m_source;
    bool m_isStarted = false;
};

const char* const device = "[device]\npoll = 20\ntimeout = 300\n";

std::string RangeOf(
    const std::string& operands, const std::string& table, int start, const std::string& more = "")
{
    return "[range " + operands + "]\noperands = " + operands + "\ntable = " + table +
           "\nstart = " + std::to_string(start) + "\n" + more;
}

std::string TcpAddress(const std::string& port)
{
    return "modbus://127.0.0.1:" + port + "/1";
}

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

void WaitForValues(Link& link, const std::map<std::string, std::uint32_t>& values)
{
    std::vector<std::string> names;
    for (const auto& [name, value] : values) {
        names.push_back(name);
    }
    link.Watch(names);
    for (const auto& [name, value] : values) {
        EXPECT_TRUE(link.Events().WaitForValue(name, value))
            << name << " is " << link.Events().Value(name).value_or(0) << ", not " << value;
    }
    EXPECT_THAT(link.Events().Unreadable(), IsEmpty());
}

TEST(ModbusDevice, TellsEveryKindOfOperandInEveryTable)
{
    const Server server({"modbus_server.py", "tcp", "0"});
    Link link(
        TcpAddress(server.Port()),
        device + RangeOf("MW0..MW98", "holding", 0) + RangeOf("EB0..EB7", "input", 5) +
            RangeOf("T0..T9", "holding", 100) + RangeOf("Z0..Z9", "input", 100) +
            RangeOf("A0.0..A9.7", "coil", 0) + RangeOf("AB10..AB17", "discrete", 0) +
            RangeOf("DB10.DBW0..DB10.DBW98", "holding", 200));

    WaitForValues(
        link,
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
    const Server server({"modbus_server.py", "tcp", "0"});

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
        Link link(
            TcpAddress(server.Port()),
            device +
                RangeOf(
                    "MW0..MW98",
                    "holding",
                    0,
                    std::string("write = yes\nbytes = ") + bytes + "\nwords = " + words + "\n"));
        WaitForValues(link, {{"MD0", value}});
        EXPECT_EQ(link.Write("MD0", 0x12345678), "done");
        EXPECT_EQ(link.Write("MD0", value), "done");
    }
    EXPECT_THAT(Mbpoll(server.Port(), holding, 0, ""), HasSubstr("\t1\n"));
    EXPECT_THAT(Mbpoll(server.Port(), holding, 1, ""), HasSubstr("\t515\n"));
}

TEST(ModbusDevice, HasWhatWasWrittenAsAnotherClientSeesIt)
{
    const Server server({"modbus_server.py", "tcp", "0"});
    Link link(
        TcpAddress(server.Port()),
        device + RangeOf("MW0..MW98", "holding", 0, "write = yes\n") +
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
    const Server server({"modbus_server.py", "tcp", "0"});
    Link link(TcpAddress(server.Port()), device + RangeOf("MW0..MW98", "holding", 0));
    WaitForValues(link, {{"MW20", 0x1415}});

    EXPECT_THAT(Mbpoll(server.Port(), holding, 10, "4711"), HasSubstr("Written 1 references"));

    EXPECT_TRUE(link.Events().WaitForValue("MW20", 4711));
}

TEST(ModbusDevice, WithoutMaskWriteTakesBitsOnlyWhenTheMapAllowsIt)
{
    const Server server({"modbus_server.py", "tcp", "0", "--no-mask-write"});
    const std::string address = TcpAddress(server.Port());
    {
        Link link(address, device + RangeOf("MW0..MW98", "holding", 0, "write = yes\n"));
        link.Watch({});
        EXPECT_THAT(
            link.Write("M0.0", 1),
            HasSubstr("the device has no mask write (function 22); bits-by = read-modify-write"));
    }
    Link link(
        address,
        device + RangeOf("MW0..MW98", "holding", 0, "write = yes\nbits-by = read-modify-write\n"));
    link.Watch({});
    EXPECT_EQ(link.Write("M0.0", 1), "done");
    EXPECT_EQ(link.Write("MB3", 200), "done");
    EXPECT_THAT(Mbpoll(server.Port(), holding, 0, ""), HasSubstr("\t257\n"));
    EXPECT_THAT(Mbpoll(server.Port(), holding, 1, ""), HasSubstr("\t712\n"));
}

TEST(ModbusDevice, IsReadAroundWhatItRefuses)
{
    const Server server({"modbus_server.py", "tcp", "0"});
    Link link(TcpAddress(server.Port()), device + RangeOf("DB1.DBW0..DB1.DBW200", "holding", 950));
    link.Watch({"DB1.DBW0", "DB1.DBW98", "DB1.DBW100", "DB1.DBD98"});

    EXPECT_TRUE(link.Events().WaitForValue("DB1.DBW98", 0xCECF));
    EXPECT_TRUE(link.Events().WaitFor([&] { return link.Events().Unreadable().size() == 2; }));
    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
}

TEST(ModbusDevice, ThatWasStoppedAndContinuedNeverShowsAWrongValue)
{
    Server server({"modbus_server.py", "tcp", "0"});
    Link link(
        TcpAddress(server.Port()),
        device + RangeOf("MW0..MW98", "holding", 0) + RangeOf("EW0..EW18", "holding", 100));
    WaitForValues(link, {{"MW0", 1}, {"EW0", 0xC8C9}});

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
        std::make_unique<Server>(std::vector<std::string>{"modbus_server.py", "tcp", "0"});
    const std::string port = server->Port();
    Link link(TcpAddress(port), device + RangeOf("MW0..MW98", "holding", 0));
    WaitForValues(link, {{"MW0", 1}});

    server.reset();
    ASSERT_TRUE(link.Events().WaitForStatus(LinkStatus::Lost));
    link.Events().ForgetValues();
    server = std::make_unique<Server>(std::vector<std::string>{"modbus_server.py", "tcp", port});

    EXPECT_TRUE(link.Events().WaitForValue("MW0", 1));
    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
}

TEST(ModbusDevice, ThatCannotBeReachedIsLostWithTheReason)
{
    const auto map = device + RangeOf("MW0..MW98", "holding", 0);
    Link nobody("modbus://127.0.0.1:1/1", map);
    nobody.Watch({"MW0"});
    EXPECT_TRUE(nobody.Events().WaitForStatus(LinkStatus::Lost));
    EXPECT_EQ(nobody.Events().State().reason, "not connected: Connection refused");

    Link nameless("modbus://no-such-host.invalid/1", map);
    nameless.Watch({"MW0"});
    EXPECT_TRUE(nameless.Events().WaitForStatus(LinkStatus::Lost));
    EXPECT_THAT(
        nameless.Events().State().reason, HasSubstr("the name no-such-host.invalid is not"));

    const TempDir folder;
    const std::string file = folder.Write("file", "mine");
    for (const std::string& path : {file, std::string("/dev/null")}) {
        Link line("modbus-rtu:" + path, map);
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
    const Server server({"misbehaving_server.py", GetParam()});
    Link link(TcpAddress(server.Port()), device + RangeOf("MW0..MW98", "holding", 0));
    link.Watch({"MW0", "MW2", "MD4"});

    EXPECT_TRUE(link.Events().WaitForStatus(LinkStatus::Running));
    EXPECT_TRUE(link.Events().WaitForValue("MD4", 0x00110011));
    EXPECT_THAT(link.Events().Values("MW0"), Each(17));
    EXPECT_THAT(link.Events().Values("MW2"), Each(17));
    EXPECT_THAT(link.Events().Values("MD4"), Each(0x00110011));
    EXPECT_TRUE(link.Events().HasBeenLost());
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
        "another_function",
        "more_registers",
        "fewer_registers",
        "more_bytes",
        "two_answers",
        "byte_by_byte",
        "hanging_up"),
    [](const auto& way) { return std::string(way.param); });

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
        m_server = std::make_unique<Server>(
            std::vector<std::string>{"modbus_server.py", "rtu", m_folder.File("far")});
    }

    std::string Address() const { return "modbus-rtu:" + m_folder.File("near") + "?unit=1"; }

    TempDir m_folder;
    Child m_line;
    std::unique_ptr<Server> m_server;
};

TEST_F(SerialDevice, IsReadAndWritten)
{
    Link link(
        Address(),
        device + RangeOf("MW0..MW98", "holding", 0, "write = yes\n") +
            RangeOf("A0.0..A9.7", "coil", 0, "write = yes\n"));
    WaitForValues(link, {{"MW4", 0x0405}, {"MD8", 0x08090A0B}, {"AB0", 0x49}});

    EXPECT_EQ(link.Write("MW4", 4711), "done");
    EXPECT_EQ(link.Write("M0.0", 1), "done");
    EXPECT_EQ(link.Write("A0.1", 1), "done");
    EXPECT_TRUE(link.Events().WaitForValue("MW4", 4711));
    EXPECT_TRUE(link.Events().WaitForValue("AB0", 0x4B));
}

TEST_F(SerialDevice, ThatWasStoppedAndContinuedNeverShowsAWrongValue)
{
    // Two blocks of the same size, whose answers cannot be told apart.
    Link link(
        Address(),
        device + RangeOf("MW0..MW18", "holding", 0) + RangeOf("EW0..EW18", "holding", 100));
    WaitForValues(link, {{"MW0", 1}, {"EW0", 0xC8C9}});

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
