#include "fuzz.h"
#include "modbus_place.h"

#include <algorithm>

// A map of a Modbus device: faults with a place, or ranges in which every bound has its addresses,
// and what is written there is what is read.

namespace {

using plclink::ModbusRange;
using plclink::ModbusSpan;

void RequireRoundTrip(const ModbusRange& range, const plc::Operand& operand)
{
    const auto write = plclink::WriteOf(range, operand, 1);
    Require(
        static_cast<bool>(write) == range.isWritable, "the bounds are as writable as the range");
    Require(
        !write || plclink::ValueIn(range, operand, write->content) == 1,
        "what is written is what is read");
}

void RequirePlaces(const ModbusRange& range)
{
    constexpr std::uint32_t addresses = 65536;
    const ModbusSpan whole = plclink::SpanOf(range);
    const auto first = plclink::FindSpan(range, range.first);
    const auto last = plclink::FindSpan(range, range.last);
    Require(whole.begin < whole.end && whole.end <= addresses, "a range has addresses");
    Require(first && first->begin == whole.begin, "the first operand is at the first address");
    Require(last && last->end == whole.end, "the last operand is at the last address");
    Require(plc::Exists(range.first) && plc::Exists(range.last), "the bounds exist");
    RequireRoundTrip(range, range.first);
    RequireRoundTrip(range, range.last);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = Text(data, size);
    const plclink::MapReading reading = plclink::ReadModbusMap(text);
    Require(reading.map.has_value() == reading.faults.empty(), "a map or faults");
    std::size_t line = 1;
    for (const plclink::MapFault& fault : reading.faults) {
        Require(fault.line >= line && !fault.reason.empty(), "faults have their places, in order");
        Require(
            std::none_of(
                fault.reason.begin(),
                fault.reason.end(),
                [](unsigned char c) { return c < ' ' && c != '\t'; }),
            "a reason is one line");
        line = fault.line;
    }
    if (reading.map) {
        Require(!reading.map->ranges.empty(), "a map has a range");
        for (const ModbusRange& range : reading.map->ranges) {
            RequirePlaces(range);
        }
    }
    return 0;
}
