#pragma once

#include "plcintlang.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

// The areas, sizes and formats of operands, and what is fixed about each. No windows. Any thread.

/// Operand areas; also the item positions in the settings dialog.
enum eVarArea : std::int32_t
{
    eAreaOutput = 0,
    eAreaInput = 1,
    eAreaFlag = 2,
    eAreaDb = 3,
    eAreaTimer = 4,
    eAreaCounter = 5
};

/// Operand widths; also the item positions in the settings dialog.
enum eVarSize : std::int32_t
{
    eSizeBit = 0,
    eSizeByte = 1,
    eSizeWord = 2,
    eSizeDouble = 3
};

/// Display and entry formats; also the item positions in the settings dialog.
enum eVarFormat : std::int32_t
{
    eFormatDecimal = 0,
    eFormatHexadecimal = 1,
    eFormatBinary = 2,
    eFormatFloat = 3
};

/// The raw values that an operator may write, both ends included.
struct ValueRange
{
    std::int32_t minimum;
    std::int32_t maximum;
};

template <typename Value> constexpr ValueRange RangeOf()
{
    return {std::numeric_limits<Value>::min(), std::numeric_limits<Value>::max()};
}

/// What is fixed about an area.
struct VarArea
{
    eVarArea value;
    char letter; ///< Names begin with it, those of a data block with "DB" and the block number.
    TextId caption;
    long limit; ///< Bytes in it; a data block has a limit of its own.
};

/// What is fixed about a size.
struct VarSize
{
    eVarSize value;
    char letter; ///< In names and list files; a bit has it in a data block only.
    TextId caption;
    unsigned bits; ///< That are shown.
    long bytes;    ///< That it takes of its area.
    ValueRange range;
};

/// What is fixed about a format.
struct VarFormat
{
    eVarFormat value;
    char letter; ///< In list files.
    TextId caption;
};

// One row per line reads as the table that it is.
// clang-format off
constexpr std::array<VarArea, 6> varAreas{{
    {eAreaOutput, 'A', TextId::AreaOutputs, 64},
    {eAreaInput, 'E', TextId::AreaInputs, 64},
    {eAreaFlag, 'M', TextId::AreaFlags, 512},
    {eAreaDb, 'D', TextId::AreaDataBlocks, 0},
    {eAreaTimer, 'T', TextId::AreaTimers, 128},
    {eAreaCounter, 'Z', TextId::AreaCounters, 64},
}};

constexpr std::array<VarSize, 4> varSizes{{
    {eSizeBit, 'X', TextId::SizeBit, 1, 1, {0, 1}},
    {eSizeByte, 'B', TextId::SizeByte, 8, 1, RangeOf<std::int8_t>()},
    {eSizeWord, 'W', TextId::SizeWord, 16, 2, RangeOf<std::int16_t>()},
    {eSizeDouble, 'D', TextId::SizeDouble, 32, 4, RangeOf<std::int32_t>()},
}};

constexpr std::array<VarFormat, 4> varFormats{{
    {eFormatDecimal, 'D', TextId::FormatDecimal},
    {eFormatHexadecimal, 'H', TextId::FormatHexadecimal},
    {eFormatBinary, 'B', TextId::FormatBinary},
    {eFormatFloat, 'G', TextId::FormatFloat},
}};

// clang-format on

/// @return true when each row of a table stands at the position that is its value.
template <typename Row, std::size_t count>
constexpr bool StandAtTheirValues(const std::array<Row, count>& table)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (table[i].value != static_cast<std::int32_t>(i)) {
            return false;
        }
    }
    return true;
}

// The settings dialog offers the rows in this order, and RowOf() finds them by it.
static_assert(StandAtTheirValues(varAreas));
static_assert(StandAtTheirValues(varSizes));
static_assert(StandAtTheirValues(varFormats));

/// @return the row of a value; null for a value that does not exist.
template <typename Row, std::size_t count>
const Row* RowOf(const std::array<Row, count>& table, std::int32_t value)
{
    return value >= 0 && static_cast<std::size_t>(value) < count
               ? &table[static_cast<std::size_t>(value)]
               : nullptr;
}

/// Timers and counters are words without a size letter.
constexpr bool IsTimerOrCounter(std::int32_t area)
{
    return area == eAreaTimer || area == eAreaCounter;
}
