#include "debug_file.h"

#include "file.h"
#include "utf8.h"

#include <algorithm>
#include <array>
#include <limits>

namespace plc {

namespace {

constexpr std::string_view signature = "PLCDBGI1"; // Eight bytes that the page does not read.
constexpr std::size_t nameBytes = 48;
constexpr std::size_t headerBytes = 12;
constexpr unsigned bitsPerByte = 8;

/// Appends the lowest @p count bytes of @p value, the lowest first.
void AppendNumber(std::string& bytes, std::uint32_t value, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i, value >>= bitsPerByte) {
        bytes += static_cast<char>(value & 0xFFU);
    }
}

/// "PB10 Conveyor", in the bytes of a block record: cut after a whole character, zero-terminated.
std::string NameField(const Block& block)
{
    std::string name = block.title.empty() ? block.name : block.name + " " + block.title;
    if (name.size() >= nameBytes) {
        std::size_t cut = nameBytes - 1;
        while (base::ContinuesCharacter(name[cut])) {
            --cut;
        }
        name.resize(cut);
    }
    name.resize(nameBytes, '\0');
    return name;
}

} // namespace

bool IsExecutable(std::string_view line)
{
    const std::size_t colon = line.find(':');
    const std::string_view judged = colon == std::string_view::npos ? line : line.substr(colon + 1);
    constexpr std::array<std::string_view, 4> words{"NOP", "BLD", "NETWORK", "TITLE"};
    return std::none_of(words.begin(), words.end(), [judged](std::string_view word) {
        return judged.find(word) != std::string_view::npos;
    });
}

base::Result<std::string> DebugFileOf(const Program& program)
{
    std::size_t offset = headerBytes;
    std::string index;
    AppendNumber(index, static_cast<std::uint32_t>(program.blocks.size()), 4);
    for (const Block& block : program.blocks) {
        index += NameField(block);
        AppendNumber(index, static_cast<std::uint32_t>(block.firstStep), 2);
        AppendNumber(index, static_cast<std::uint32_t>(block.lines.size()), 2);
        AppendNumber(index, static_cast<std::uint32_t>(offset), 4);
        for (const Line& line : block.lines) {
            offset += line.text.size() + 1;
        }
    }
    if (offset > std::numeric_limits<std::int32_t>::max()) {
        return base::Failure{"the listing is too long for a program debug file"};
    }

    std::string bytes(signature);
    AppendNumber(bytes, static_cast<std::uint32_t>(offset), 4);
    for (const Block& block : program.blocks) {
        for (const Line& line : block.lines) {
            bytes += line.text;
            bytes += '\n';
        }
    }
    return bytes + index;
}

base::Result<void> WriteDebugFile(const Program& program, const std::string& prefix)
{
    const auto bytes = DebugFileOf(program);
    if (!bytes) {
        return base::Failure{bytes.Message()};
    }
    return base::ReplaceFile(prefix + std::string(debugFileSuffix), *bytes);
}

} // namespace plc
