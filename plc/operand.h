#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Operands of the PLC: areas, widths, their names and which of them exist. Values. Any thread.

namespace plc {

enum class Area : std::uint8_t
{
    Output,    ///< "A"
    Input,     ///< "E"
    Flag,      ///< "M"
    DataBlock, ///< "DB" and the block number
    Timer,     ///< "T"
    Counter    ///< "Z"
};

enum class Width : std::uint8_t
{
    Bit,
    Byte,
    Word,      ///< 16 bits, high byte first
    DoubleWord ///< 32 bits, highest byte first
};

/// Bytes that an operand of this width occupies; 1 for a bit.
constexpr std::uint32_t ByteCount(Width width)
{
    switch (width) {
    case Width::Bit:
    case Width::Byte:
        return 1;
    case Width::Word:
        return 2;
    case Width::DoubleWord:
        return 4;
    }
    return 0;
}

/// One operand. Timers and counters are words.
struct Operand
{
    Area area = Area::Output;
    Width width = Width::Bit;
    std::uint16_t block = 0;   ///< Data block number; 0 in the other areas.
    std::uint16_t address = 0; ///< First byte, or the number of the timer or counter.
    std::uint8_t bit = 0;      ///< 0 to 7, 0 the lowest; 0 for the other widths.
};

bool operator==(const Operand& a, const Operand& b);

/// A data block and how many bytes it holds.
struct DataBlockSize
{
    std::uint16_t number;
    std::uint16_t bytes;
};

/// All data blocks, by ascending number.
const std::vector<DataBlockSize>& DataBlocks();

/// Bytes in an area, or the count of its timers or counters; for data blocks those of @p block.
/// 0 for a block that does not exist.
std::uint32_t AreaSize(Area area, std::uint16_t block = 0);

/// Whether the whole operand lies inside its area.
bool Exists(const Operand& operand);

/// Reads a name without blanks: "EB10", "A3.5", "MW20", "DB1.DBX10.3", "DB10.DBD100", "T5", "Z12".
/// @return nothing when the text is no operand name. What it names need not exist.
std::optional<Operand> ParseOperand(std::string_view name);

/// The name that ParseOperand() reads.
std::string OperandName(const Operand& operand);

} // namespace plc
