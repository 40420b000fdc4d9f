#pragma once

#include "operand.h"
#include "result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The map of a Modbus device: which operands lie in which of its registers. docs/formats.md
// describes the file. Values. Any thread.

namespace plclink {

enum class ModbusTable : std::uint8_t
{
    Coil,     ///< Bits, read and written.
    Discrete, ///< Bits, read only.
    Input,    ///< Registers, read only.
    Holding   ///< Registers, read and written.
};

bool HasRegisters(ModbusTable table);

/// The most that the protocol has room for in one answer.
constexpr std::uint16_t mostRegisters = 125;
constexpr std::uint16_t mostBits = 2000;

constexpr std::chrono::milliseconds usualTimeout{500};

/// How a device wants to be asked.
struct ModbusDevice
{
    std::chrono::milliseconds poll{100};
    std::chrono::milliseconds timeout{usualTimeout};
    std::chrono::milliseconds apart{0};      ///< Between two requests.
    std::uint16_t registers = mostRegisters; ///< The most in one request.
    std::uint16_t bits = mostBits;           ///< The most coils or inputs in one request.
};

/// Operands that lie one behind the other in a table of the device, which can be read as a whole.
struct ModbusRange
{
    std::string name;
    plc::Operand first; ///< Of the same area, block and width as the last.
    plc::Operand last;
    ModbusTable table = ModbusTable::Holding;
    std::uint16_t start = 0;     ///< Protocol address of the first operand.
    bool isLowByteFirst = false; ///< In a register.
    bool isLowWordFirst = false; ///< Of a double word.
    bool isWritable = false;
    bool isRewritten = false; ///< A bit or byte is written by reading and writing its register.
};

struct ModbusMap
{
    ModbusDevice device;
    std::vector<ModbusRange> ranges; ///< At least one; no operand lies in two of them.
};

/// A mistake in a map.
struct MapFault
{
    std::size_t line; ///< From 1.
    std::string reason;
};

struct MapReading
{
    std::optional<ModbusMap> map; ///< None when there are faults.
    std::vector<MapFault> faults; ///< All of the text, by line.
};

MapReading ReadModbusMap(std::string_view text);

/// @return the map, or a headline and every fault of the file on a line of its own:
///         "oven.map:3: there is no ...".
base::Result<ModbusMap> ReadModbusMapFile(const std::string& path);

} // namespace plclink
