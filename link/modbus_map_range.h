#pragma once

#include "modbus_map_sections.h"

#include <cstddef>
#include <optional>
#include <vector>

// The section of one range of a Modbus map. Any thread.

namespace plclink {

struct RangeReading
{
    std::optional<ModbusRange> range; ///< None when the section has a fault.
    std::size_t operandsLine;         ///< Where they are named.
    std::size_t startLine;
};

/// @param faults takes those of the section.
RangeReading ReadRange(const Section& section, std::vector<MapFault>& faults);

} // namespace plclink
