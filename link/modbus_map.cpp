#include "modbus_map.h"

#include "arguments.h"
#include "file.h"
#include "modbus_map_range.h"
#include "modbus_place.h"
#include "utf8.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace plclink {

namespace {

using Faults = std::vector<MapFault>;

/// A number of the device's section.
struct DeviceKey
{
    std::string_view key;
    long lowest;
    long highest;
    void (*set)(ModbusDevice& device, long number);
};

constexpr DeviceKey deviceKeys[] = {
    {"poll", 20, 60000, [](ModbusDevice& d, long n) { d.poll = std::chrono::milliseconds(n); }},
    {"timeout",
     10,
     10000,
     [](ModbusDevice& d, long n) { d.timeout = std::chrono::milliseconds(n); }},
    {"apart", 0, 10000, [](ModbusDevice& d, long n) { d.apart = std::chrono::milliseconds(n); }},
    {"registers",
     1,
     mostRegisters,
     [](ModbusDevice& d, long n) { d.registers = static_cast<std::uint16_t>(n); }},
    {"bits", 1, mostBits, [](ModbusDevice& d, long n) { d.bits = static_cast<std::uint16_t>(n); }}};

ModbusDevice DeviceOf(const Section& section, Faults& faults)
{
    ModbusDevice device;
    for (const auto& [key, entry] : section.entries) {
        const auto* const known =
            std::find_if(std::begin(deviceKeys), std::end(deviceKeys), [&name = key](auto& row) {
                return row.key == name;
            });
        if (known == std::end(deviceKeys)) {
            faults.push_back(
                {entry.line,
                 "there is no key " + plc::Quoted(key) +
                     ", only poll, timeout, apart, registers and bits"});
            continue;
        }
        const auto number = NumberIn(entry.value, known->lowest, known->highest);
        if (number) {
            known->set(device, *number);
        } else {
            faults.push_back({entry.line, number.Message()});
        }
    }
    return device;
}

/// Whether an address is in both ranges, and one of them writes it.
bool ShareWritableAddresses(const ModbusRange& a, const ModbusRange& b)
{
    return a.table == b.table && (a.isWritable || b.isWritable) && Overlap(SpanOf(a), SpanOf(b));
}

/// Refuses what a range may not have in common with one above it; one of them is named.
void CheckOverlaps(
    const std::vector<RangeReading>& readings,
    std::size_t RangeReading::*line,
    bool (*overlap)(const ModbusRange& a, const ModbusRange& b),
    const std::string& reason,
    Faults& faults)
{
    for (auto range = readings.begin(); range != readings.end(); ++range) {
        const auto other = std::find_if(readings.begin(), range, [&](const RangeReading& above) {
            return above.range && range->range && overlap(*above.range, *range->range);
        });
        if (other != range) {
            faults.push_back(
                {(*range).*line,
                 reason + " in the range " + plc::Quoted(other->range->name) + ", too, on line " +
                     std::to_string((*other).*line)});
        }
    }
}

} // namespace

bool HasRegisters(ModbusTable table)
{
    return table == ModbusTable::Input || table == ModbusTable::Holding;
}

MapReading ReadModbusMap(std::string_view text)
{
    MapReading reading;
    Sections sections(reading.faults);
    const std::string utf8 = base::Utf8Of(text);
    for (std::string_view rest = utf8; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const bool hasReturn = !line.empty() && line.back() == '\r';
        sections.AddLine(line.substr(0, line.size() - (hasReturn ? 1 : 0)));
    }
    ModbusMap map;
    if (sections.Device()) {
        map.device = DeviceOf(*sections.Device(), reading.faults);
    }
    std::vector<RangeReading> readings;
    for (const Section& section : sections.Ranges()) {
        readings.push_back(ReadRange(section, reading.faults));
    }
    CheckOverlaps(
        readings,
        &RangeReading::operandsLine,
        ShareOperands,
        "some of these operands are",
        reading.faults);
    CheckOverlaps(
        readings,
        &RangeReading::startLine,
        ShareWritableAddresses,
        "some of these addresses can be written and are",
        reading.faults);
    if (reading.faults.empty() && readings.empty()) {
        reading.faults.push_back({1, "there is no range: [range NAME]"});
    }
    std::stable_sort(
        reading.faults.begin(), reading.faults.end(), [](const MapFault& a, const MapFault& b) {
            return a.line < b.line;
        });
    if (!reading.faults.empty()) {
        return reading;
    }
    for (const RangeReading& range : readings) {
        map.ranges.push_back(*range.range);
    }
    reading.map = std::move(map);
    return reading;
}

base::Result<ModbusMap> ReadModbusMapFile(const std::string& path)
{
    const auto text = base::ReadFile(path);
    if (!text) {
        return base::Failure{text.Message()};
    }
    MapReading reading = ReadModbusMap(*text);
    if (reading.map) {
        return std::move(*reading.map);
    }
    std::string message = "the map has faults:";
    for (const MapFault& fault : reading.faults) {
        message += '\n' + path + ":" + std::to_string(fault.line) + ": " + fault.reason;
    }
    return base::Failure{message};
}

} // namespace plclink
