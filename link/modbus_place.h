#pragma once

#include "modbus_map.h"

#include <cstdint>
#include <optional>
#include <vector>

// Where an operand lies in the tables of a Modbus device, and what the words found there mean.
// Values. Any thread.

namespace plclink {

constexpr std::uint32_t bitsOfByte = 8; ///< A register has two bytes.
constexpr std::uint32_t byteMask = 0xFF;

/// Whether the area's addresses are numbers of timers or counters, not bytes.
bool IsNumbered(const plc::Operand& operand);

/// Addresses of a table, one behind the other.
struct ModbusSpan
{
    std::uint32_t begin;
    std::uint32_t end; ///< Behind the last one, 65536 at most in a map.

    std::uint32_t Count() const { return end - begin; }
};

bool operator==(const ModbusSpan& a, const ModbusSpan& b);

/// Whether two spans share an address.
bool Overlap(const ModbusSpan& a, const ModbusSpan& b);

/// The registers or bits of a whole range.
ModbusSpan SpanOf(const ModbusRange& range);

/// @return the registers or bits that hold any of the operand; nothing when it does not lie in the
///         range as a whole.
std::optional<ModbusSpan> FindSpan(const ModbusRange& range, const plc::Operand& operand);

/// Whether two ranges name the same operands, or parts of them.
bool ShareOperands(const ModbusRange& a, const ModbusRange& b);

/// Whether a double word lies in the range.
bool HoldsDoubleWord(const ModbusRange& range);

/// The value of an operand as the PLC has it: 0 or 1 for a bit, bytes and words without sign.
/// @param content what was read at FindSpan(): registers, or bits of 0 and 1.
std::uint32_t ValueIn(
    const ModbusRange& range,
    const plc::Operand& operand,
    const std::vector<std::uint16_t>& content);

/// What has to be sent so that an operand has a value.
struct ModbusWrite
{
    enum class Kind : std::uint8_t
    {
        Replace, ///< Registers or bits take the content.
        Mask     ///< Of one register, only the bits of the mask take the content.
    };

    Kind kind = Kind::Replace;
    ModbusSpan span{0, 0};
    std::vector<std::uint16_t> content{};
    std::uint16_t mask = 0;
};

/// @param value its lowest bits count, as many as the operand has.
/// @return why the operand is only read, in a sentence that names it, when it is.
base::Result<ModbusWrite>
WriteOf(const ModbusRange& range, const plc::Operand& operand, std::uint32_t value);

/// A register in which only the bits of the mask are replaced by those of the content.
std::uint16_t Masked(std::uint16_t reg, std::uint16_t mask, std::uint16_t content);

} // namespace plclink
