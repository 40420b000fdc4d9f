#include "image.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>

namespace plc {

namespace {

constexpr unsigned bitsPerByte = 8;
constexpr std::uint32_t byteMask = 0xFF;

/// Where areas begin in Image's bytes.
struct Layout
{
    std::uint32_t outputs = 0;
    std::uint32_t inputs = outputs + AreaSize(Area::Output);
    std::uint32_t flags = inputs + AreaSize(Area::Input);
    std::uint32_t size = flags + AreaSize(Area::Flag);
    std::map<std::uint16_t, std::uint32_t> blocks;

    Layout()
    {
        for (const auto& [number, bytes] : DataBlocks()) {
            blocks.emplace(number, size);
            size += bytes;
        }
    }
};

const Layout& TheLayout()
{
    static const Layout layout;
    return layout;
}

} // namespace

Image::Image()
    : m_bytes(TheLayout().size), m_timers(AreaSize(Area::Timer)),
      m_counters(AreaSize(Area::Counter))
{
}

std::optional<Cell> Image::Find(const Operand& operand)
{
    if (!Exists(operand)) {
        return std::nullopt;
    }
    const Layout& layout = TheLayout();
    Cell cell{Cell::Kind::Memory, operand.width, operand.bit, operand.address};
    switch (operand.area) {
    case Area::Output:
        cell.index += layout.outputs;
        break;
    case Area::Input:
        cell.index += layout.inputs;
        break;
    case Area::Flag:
        cell.index += layout.flags;
        break;
    case Area::DataBlock:
        cell.index += layout.blocks.at(operand.block);
        break;
    case Area::Timer:
        cell.kind = Cell::Kind::Timer;
        break;
    case Area::Counter:
        cell.kind = Cell::Kind::Counter;
        break;
    }
    return cell;
}

Cell Image::CellOf(std::string_view name)
{
    const auto operand = ParseOperand(name);
    const auto cell = operand ? Find(*operand) : std::nullopt;
    if (!cell) {
        throw std::invalid_argument("no operand " + std::string(name));
    }
    return *cell;
}

std::uint32_t Image::Read(const Cell& cell) const
{
    if (cell.kind == Cell::Kind::Timer) {
        return m_timers[cell.index].Value();
    }
    if (cell.kind == Cell::Kind::Counter) {
        return m_counters[cell.index].Value();
    }
    if (cell.width == Width::Bit) {
        return IsOn(cell) ? 1 : 0;
    }
    const std::uint32_t end = cell.index + ByteCount(cell.width);
    std::uint32_t value = 0;
    for (std::uint32_t i = cell.index; i < end; ++i) {
        value = value << bitsPerByte | m_bytes[i];
    }
    return value;
}

void Image::Write(const Cell& cell, std::uint32_t value)
{
    if (cell.kind == Cell::Kind::Timer) {
        m_timers[cell.index].SetValue(static_cast<std::uint16_t>(value));
    } else if (cell.kind == Cell::Kind::Counter) {
        m_counters[cell.index].SetValue(static_cast<std::uint16_t>(value));
    } else if (cell.width == Width::Bit) {
        const unsigned mask = 1U << cell.bit;
        const unsigned others = m_bytes[cell.index] & ~mask;
        m_bytes[cell.index] = static_cast<std::uint8_t>((value & 1U) != 0 ? others | mask : others);
    } else {
        for (std::uint32_t i = ByteCount(cell.width); i-- > 0; value >>= bitsPerByte) {
            m_bytes[cell.index + i] = static_cast<std::uint8_t>(value & byteMask);
        }
    }
}

bool Image::IsOn(const Cell& cell) const
{
    if (cell.kind == Cell::Kind::Timer) {
        return m_timers[cell.index].IsOn();
    }
    if (cell.kind == Cell::Kind::Counter) {
        return m_counters[cell.index].IsOn();
    }
    return ((static_cast<unsigned>(m_bytes[cell.index]) >> cell.bit) & 1U) != 0;
}

std::optional<std::uint32_t> Image::Read(const Operand& operand) const
{
    const auto cell = Find(operand);
    return cell ? std::optional(Read(*cell)) : std::nullopt;
}

bool Image::Write(const Operand& operand, std::uint32_t value)
{
    const auto cell = Find(operand);
    if (cell) {
        Write(*cell, value);
    }
    return cell.has_value();
}

void Image::AdvanceTimers(std::chrono::milliseconds elapsed)
{
    for (Timer& timer : m_timers) {
        timer.Advance(elapsed);
    }
}

void Image::ClearOutputs()
{
    std::fill_n(&m_bytes[TheLayout().outputs], AreaSize(Area::Output), std::uint8_t{0});
}

} // namespace plc
