#include "operand.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace plc {

namespace {

constexpr std::uint32_t outputBytes = 64;
constexpr std::uint32_t inputBytes = 64;
constexpr std::uint32_t flagBytes = 512;
constexpr std::uint32_t timerCount = 128;
constexpr std::uint32_t counterCount = 64;
constexpr std::uint8_t highestBit = 7;

/// Takes @p prefix off the front of @p text if it stands there.
bool TakePrefix(std::string_view& text, std::string_view prefix)
{
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

/// Takes a decimal number off the front of @p text; nothing when none stands there or it is too
/// large for any operand.
std::optional<std::uint16_t> TakeNumber(std::string_view& text)
{
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// Takes the area and, for a data block, its number.
bool TakeArea(std::string_view& text, Operand& operand)
{
    if (TakePrefix(text, "DB")) {
        const auto block = TakeNumber(text);
        operand.area = Area::DataBlock;
        operand.block = block.value_or(0);
        return block && TakePrefix(text, ".DB");
    }
    constexpr std::tuple<std::string_view, Area> letters[] = {
        {"A", Area::Output},
        {"E", Area::Input},
        {"M", Area::Flag},
        {"T", Area::Timer},
        {"Z", Area::Counter}};
    for (const auto& [letter, area] : letters) {
        if (TakePrefix(text, letter)) {
            operand.area = area;
            return true;
        }
    }
    return false;
}

bool IsNumbered(Area area)
{
    return area == Area::Timer || area == Area::Counter;
}

/// Takes the letter of the width; a bit has none, or an X in a data block.
bool TakeWidth(std::string_view& text, Operand& operand)
{
    operand.width = Width::Word;
    if (IsNumbered(operand.area)) {
        return true;
    }
    constexpr std::tuple<std::string_view, Width> letters[] = {
        {"B", Width::Byte}, {"W", Width::Word}, {"D", Width::DoubleWord}};
    for (const auto& [letter, width] : letters) {
        if (TakePrefix(text, letter)) {
            operand.width = width;
            return true;
        }
    }
    operand.width = Width::Bit;
    return operand.area != Area::DataBlock || TakePrefix(text, "X");
}

std::string_view AreaLetter(Area area)
{
    switch (area) {
    case Area::Output:
        return "A";
    case Area::Input:
        return "E";
    case Area::Flag:
        return "M";
    case Area::DataBlock:
        return "DB";
    case Area::Timer:
        return "T";
    case Area::Counter:
        return "Z";
    }
    return {};
}

std::string_view WidthLetter(const Operand& operand)
{
    if (IsNumbered(operand.area)) {
        return {};
    }
    switch (operand.width) {
    case Width::Bit:
        return operand.area == Area::DataBlock ? "X" : "";
    case Width::Byte:
        return "B";
    case Width::Word:
        return "W";
    case Width::DoubleWord:
        return "D";
    }
    return {};
}

} // namespace

bool operator==(const Operand& a, const Operand& b)
{
    return std::tie(a.area, a.width, a.block, a.address, a.bit) ==
           std::tie(b.area, b.width, b.block, b.address, b.bit);
}

const std::vector<DataBlockSize>& DataBlocks()
{
    static const std::vector<DataBlockSize> blocks{
        {1, 2302}, {2, 32},    {3, 32},   {4, 17},   {10, 1024}, {15, 1024}, {20, 1200},
        {21, 738}, {25, 1200}, {26, 738}, {50, 128}, {51, 128},  {52, 128},  {60, 128},
        {61, 128}, {62, 128},  {63, 128}, {64, 82},  {65, 82},   {66, 82},   {67, 82},
        {68, 82},  {69, 82},   {70, 82},  {71, 82},  {72, 82},   {73, 82},   {74, 82},
        {75, 82},  {76, 82},   {77, 82},  {78, 82},  {79, 82},   {95, 208},  {100, 1000}};
    return blocks;
}

std::uint32_t AreaSize(Area area, std::uint16_t block)
{
    switch (area) {
    case Area::Output:
        return outputBytes;
    case Area::Input:
        return inputBytes;
    case Area::Flag:
        return flagBytes;
    case Area::Timer:
        return timerCount;
    case Area::Counter:
        return counterCount;
    case Area::DataBlock:
        break;
    }
    const auto& blocks = DataBlocks();
    const auto found = std::find_if(
        blocks.begin(), blocks.end(), [block](const auto& entry) { return entry.number == block; });
    return found == blocks.end() ? 0 : found->bytes;
}

bool Exists(const Operand& operand)
{
    const std::uint32_t bytes = IsNumbered(operand.area) ? 1 : ByteCount(operand.width);
    return operand.bit <= highestBit &&
           operand.address + bytes <= AreaSize(operand.area, operand.block);
}

std::optional<Operand> ParseOperand(std::string_view name)
{
    Operand operand;
    if (!TakeArea(name, operand) || !TakeWidth(name, operand)) {
        return std::nullopt;
    }
    const auto address = TakeNumber(name);
    if (!address) {
        return std::nullopt;
    }
    operand.address = *address;
    if (operand.width == Width::Bit) {
        if (!TakePrefix(name, ".") || name.size() != 1 || name[0] < '0' || name[0] > '7') {
            return std::nullopt;
        }
        operand.bit = static_cast<std::uint8_t>(name[0] - '0');
        name.remove_prefix(1);
    }
    return name.empty() ? std::optional(operand) : std::nullopt;
}

std::string OperandName(const Operand& operand)
{
    std::string name(AreaLetter(operand.area));
    if (operand.area == Area::DataBlock) {
        name += std::to_string(operand.block) + ".DB";
    }
    name += WidthLetter(operand);
    name += std::to_string(operand.address);
    if (operand.width == Width::Bit) {
        name += "." + std::to_string(operand.bit);
    }
    return name;
}

} // namespace plc
