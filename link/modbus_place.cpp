#include "modbus_place.h"

#include <tuple>

namespace plclink {

namespace {

constexpr std::uint32_t bitsOfRegister = 16;

/// Bits from the beginning of the area; a timer or counter takes as many as a register.
std::uint32_t FirstBit(const plc::Operand& operand)
{
    return IsNumbered(operand) ? operand.address * bitsOfRegister
                               : operand.address * bitsOfByte + operand.bit;
}

std::uint32_t EndBit(const plc::Operand& operand)
{
    const std::uint32_t bits =
        operand.width == plc::Width::Bit ? 1 : plc::ByteCount(operand.width) * bitsOfByte;
    return FirstBit(operand) + bits;
}

bool IsSameArea(const plc::Operand& a, const plc::Operand& b)
{
    return std::tie(a.area, a.block) == std::tie(b.area, b.block);
}

/// Bits from the range's first one to the operand's.
std::uint32_t Offset(const ModbusRange& range, const plc::Operand& operand)
{
    return FirstBit(operand) - FirstBit(range.first);
}

/// Whether a word or double word begins in the second half of a register.
bool IsTorn(const ModbusRange& range, const plc::Operand& operand)
{
    return HasRegisters(range.table) && plc::ByteCount(operand.width) > 1 &&
           Offset(range, operand) % bitsOfRegister != 0;
}

/// Where a byte stands in its register, in bits from the lowest one.
/// @param at of the byte in bits, from the beginning of a register.
std::uint32_t ShiftOf(const ModbusRange& range, std::uint32_t at)
{
    const bool isFirst = at % bitsOfRegister < bitsOfByte;
    return isFirst == range.isLowByteFirst ? 0 : bitsOfByte;
}

/// Where byte @p i of an operand, the lowest address first, stands in its value: bits from the
/// lowest one.
std::uint32_t ShiftInValue(const ModbusRange& range, plc::Width width, std::uint32_t i)
{
    constexpr std::uint32_t otherWord = 2;
    const std::uint32_t place = plc::ByteCount(width) - 1 - i;
    const bool isSwapped = width == plc::Width::DoubleWord && range.isLowWordFirst;
    return (isSwapped ? place ^ otherWord : place) * bitsOfByte;
}

/// The bits that a bit or byte has in its register.
std::uint16_t MaskOf(const ModbusRange& range, const plc::Operand& operand)
{
    const std::uint32_t bits = operand.width == plc::Width::Bit ? 1U << operand.bit : byteMask;
    return static_cast<std::uint16_t>(bits << ShiftOf(range, Offset(range, operand)));
}

/// A value in the bytes of its operand, first address first.
std::uint32_t
ByteOf(const ModbusRange& range, plc::Width width, std::uint32_t value, std::uint32_t i)
{
    return value >> ShiftInValue(range, width, i) & byteMask;
}

std::vector<std::uint16_t>
RegistersOf(const ModbusRange& range, const plc::Operand& operand, std::uint32_t value)
{
    std::vector<std::uint16_t> registers;
    for (std::uint32_t i = 0; i < plc::ByteCount(operand.width); i += 2) {
        const std::uint32_t first = ByteOf(range, operand.width, value, i);
        const std::uint32_t second = ByteOf(range, operand.width, value, i + 1);
        registers.push_back(static_cast<std::uint16_t>(
            first << ShiftOf(range, 0) | second << ShiftOf(range, bitsOfByte)));
    }
    return registers;
}

std::vector<std::uint16_t>
BitsOf(const ModbusRange& range, const plc::Operand& operand, std::uint32_t value)
{
    if (operand.width == plc::Width::Bit) {
        return {static_cast<std::uint16_t>(value & 1)};
    }
    std::vector<std::uint16_t> bits;
    for (std::uint32_t i = 0; i < plc::ByteCount(operand.width); ++i) {
        for (std::uint32_t bit = 0; bit < bitsOfByte; ++bit) {
            bits.push_back(ByteOf(range, operand.width, value, i) >> bit & 1);
        }
    }
    return bits;
}

} // namespace

bool IsNumbered(const plc::Operand& operand)
{
    return operand.area == plc::Area::Timer || operand.area == plc::Area::Counter;
}

bool operator==(const ModbusSpan& a, const ModbusSpan& b)
{
    return a.begin == b.begin && a.end == b.end;
}

bool Overlap(const ModbusSpan& a, const ModbusSpan& b)
{
    return a.begin < b.end && b.begin < a.end;
}

ModbusSpan SpanOf(const ModbusRange& range)
{
    const std::uint32_t bits = EndBit(range.last) - FirstBit(range.first);
    const std::uint32_t count =
        HasRegisters(range.table) ? (bits + bitsOfRegister - 1) / bitsOfRegister : bits;
    return {range.start, range.start + count};
}

std::optional<ModbusSpan> FindSpan(const ModbusRange& range, const plc::Operand& operand)
{
    if (!IsSameArea(range.first, operand) || FirstBit(operand) < FirstBit(range.first) ||
        EndBit(operand) > EndBit(range.last)) {
        return std::nullopt;
    }
    const std::uint32_t unit = HasRegisters(range.table) ? bitsOfRegister : 1;
    const std::uint32_t begin = Offset(range, operand);
    const std::uint32_t end = begin + EndBit(operand) - FirstBit(operand);
    return ModbusSpan{range.start + begin / unit, range.start + (end + unit - 1) / unit};
}

bool ShareOperands(const ModbusRange& a, const ModbusRange& b)
{
    return IsSameArea(a.first, b.first) && FirstBit(a.first) < EndBit(b.last) &&
           FirstBit(b.first) < EndBit(a.last);
}

bool HoldsDoubleWord(const ModbusRange& range)
{
    return !IsNumbered(range.first) && EndBit(range.last) - FirstBit(range.first) >=
                                           plc::ByteCount(plc::Width::DoubleWord) * bitsOfByte;
}

std::uint32_t ValueIn(
    const ModbusRange& range,
    const plc::Operand& operand,
    const std::vector<std::uint16_t>& content)
{
    const bool hasRegisters = HasRegisters(range.table);
    if (operand.width == plc::Width::Bit) {
        return hasRegisters ? (content.at(0) & MaskOf(range, operand)) != 0 : content.at(0) & 1U;
    }
    const std::uint32_t offset = hasRegisters ? Offset(range, operand) % bitsOfRegister : 0;
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < plc::ByteCount(operand.width); ++i) {
        const std::uint32_t at = offset + i * bitsOfByte;
        std::uint32_t byte = 0;
        if (hasRegisters) {
            byte =
                static_cast<std::uint32_t>(content.at(at / bitsOfRegister)) >> ShiftOf(range, at) &
                byteMask;
        } else {
            for (std::uint32_t bit = 0; bit < bitsOfByte; ++bit) {
                byte |= (content.at(at + bit) & 1U) << bit;
            }
        }
        value |= byte << ShiftInValue(range, operand.width, i);
    }
    return value;
}

base::Result<ModbusWrite>
WriteOf(const ModbusRange& range, const plc::Operand& operand, std::uint32_t value)
{
    const std::string name = plc::OperandName(operand);
    const auto span = FindSpan(range, operand);
    if (!span) {
        return base::Failure{name + " is not in the range " + range.name};
    }
    if (!range.isWritable) {
        return base::Failure{
            name + " is only read: its range " + range.name + " does not say write = yes"};
    }
    if (IsTorn(range, operand)) {
        return base::Failure{name + " is only read: it begins in the middle of a register"};
    }
    if (!HasRegisters(range.table)) {
        return ModbusWrite{ModbusWrite::Kind::Replace, *span, BitsOf(range, operand, value)};
    }
    if (plc::ByteCount(operand.width) > 1) {
        return ModbusWrite{ModbusWrite::Kind::Replace, *span, RegistersOf(range, operand, value)};
    }
    const std::uint16_t mask = MaskOf(range, operand);
    const std::uint32_t shift = ShiftOf(range, Offset(range, operand)) + operand.bit;
    const auto content = static_cast<std::uint16_t>(value << shift & mask);
    return ModbusWrite{ModbusWrite::Kind::Mask, *span, {content}, mask};
}

std::uint16_t Masked(std::uint16_t reg, std::uint16_t mask, std::uint16_t content)
{
    return static_cast<std::uint16_t>((reg & ~mask) | (content & mask));
}

} // namespace plclink
