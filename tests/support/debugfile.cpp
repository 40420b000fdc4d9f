#include "debugfile.h"

namespace {

constexpr std::size_t nameSize = 48;
constexpr std::size_t headSize = 12;
constexpr unsigned byteBits = 8;

std::string LittleEndian16(std::uint16_t value)
{
    return {static_cast<char>(value), static_cast<char>(value >> byteBits)};
}

} // namespace

std::string LittleEndian(std::int32_t value)
{
    std::string bytes;
    for (unsigned shift = 0; shift < 4 * byteBits; shift += byteBits) {
        bytes += static_cast<char>(static_cast<std::uint32_t>(value) >> shift);
    }
    return bytes;
}

std::string DebugFileHead(std::int32_t indexOffset)
{
    return "PLCDEBUG" + LittleEndian(indexOffset);
}

std::string DebugFile(const std::vector<DebugFileBlock>& blocks, const std::string& lineEnd)
{
    std::string text;
    std::string index = LittleEndian(static_cast<std::int32_t>(blocks.size()));
    for (const DebugFileBlock& block : blocks) {
        std::string name = block.name;
        name.resize(nameSize);
        const auto count = static_cast<std::uint16_t>(block.lines.size());
        index += name + LittleEndian16(block.firstStep) +
                 LittleEndian16(block.lineCount.value_or(count)) +
                 LittleEndian(static_cast<std::int32_t>(headSize + text.size()));
        for (const std::string& line : block.lines) {
            text += line + lineEnd;
        }
    }
    return DebugFileHead(static_cast<std::int32_t>(headSize + text.size())) + text + index;
}

std::vector<std::string> ExecutableLines(int count, const std::string& prefix)
{
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        lines.push_back(prefix + " " + std::to_string(i));
    }
    return lines;
}
