#include "devicelink.h"

#include "modbus_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace {

plc::Operand Named(const std::string& name)
{
    const auto operand = plc::ParseOperand(name);
    EXPECT_TRUE(operand) << name;
    return operand.value_or(plc::Operand{});
}

} // namespace

DeviceLink::DeviceLink(const std::string& address, const std::string& map)
{
    plclink::MapReading reading = plclink::ReadModbusMap(map);
    EXPECT_TRUE(reading.map);
    const auto parsed = plclink::ParseModbusAddress(address);
    EXPECT_TRUE(parsed);
    m_source = std::make_unique<plclink::ModbusSource>(
        *reading.map, plclink::MakeModbusConnection(*parsed, *reading.map));
}

void DeviceLink::Watch(const std::vector<std::string>& names)
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

void DeviceLink::ExpectValues(const std::map<std::string, std::uint32_t>& values)
{
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const auto& [name, value] : values) {
        names.push_back(name);
    }
    Watch(names);
    std::map<std::string, std::uint32_t> told;
    EXPECT_TRUE(m_events.WaitFor([&] {
        for (const std::string& name : names) {
            if (const auto value = m_events.Value(name)) {
                told[name] = *value;
            }
        }
        return told.size() == names.size();
    }));
    EXPECT_EQ(told, values);
    EXPECT_THAT(m_events.Unreadable(), testing::IsEmpty());
}

void DeviceLink::ExpectTheTruthAtLast()
{
    Watch({"MW0", "MW2", "MD4"});
    EXPECT_TRUE(m_events.WaitForStatus(plclink::LinkStatus::Running));
    EXPECT_TRUE(m_events.WaitForValue("MD4", 0x00110011));
    EXPECT_THAT(m_events.Values("MW0"), testing::Each(17));
    EXPECT_THAT(m_events.Values("MW2"), testing::Each(17));
    EXPECT_THAT(m_events.Values("MD4"), testing::Each(0x00110011));
    EXPECT_TRUE(m_events.HasBeenLost());
}

std::string DeviceLink::Write(const std::string& name, std::uint32_t value)
{
    const auto end = std::make_shared<std::promise<std::string>>();
    m_source->Write(Named(name), value, [end](const base::Result<void>& done) {
        end->set_value(done ? "done" : done.Message());
    });
    return end->get_future().get();
}

const char* const deviceSection = "[device]\npoll = 20\ntimeout = 300\n";

std::string
RangeOf(const std::string& operands, const std::string& table, int start, const std::string& more)
{
    return "[range " + operands + "]\noperands = " + operands + "\ntable = " + table +
           "\nstart = " + std::to_string(start) + "\n" + more;
}

std::string TcpAddress(const std::string& port)
{
    return "modbus://127.0.0.1:" + port + "/1";
}
