#pragma once

#include "modbus_source.h"
#include "sourceevents.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// The link with one device. Its functions fail the test when something is wrong with it.
class DeviceLink
{
public:
    DeviceLink(const std::string& address, const std::string& map);

    void Watch(const std::vector<std::string>& names);

    /// Watches these operands until each has a value, which has to be this one.
    void ExpectValues(const std::map<std::string, std::uint32_t>& values);

    /// Watches what misbehaving_server.py has, until all of it has come, and nothing but the truth
    /// of it, although the link was lost meanwhile.
    void ExpectTheTruthAtLast();

    /// What comes of a write.
    std::string Write(const std::string& name, std::uint32_t value);

    RecordedEvents& Events() { return m_events; }

private:
    RecordedEvents m_events;
    std::unique_ptr<plclink::ModbusSource> m_source;
    bool m_isStarted = false;
};

/// The section of a map that all devices of the tests share.
extern const char* const deviceSection;

/// A section of a map.
/// @param more its other lines.
std::string RangeOf(
    const std::string& operands, const std::string& table, int start, const std::string& more = "");

std::string TcpAddress(const std::string& port);
