#include "debug_file.h"

#include "file.h"
#include "utf8.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace plc {

namespace {

constexpr std::string_view signature = "PLCDBGI1"; // Eight bytes that the page does not read.
constexpr std::size_t nameBytes = 48;
constexpr std::size_t headerBytes = 12;
constexpr std::size_t recordBytes = 56;
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

/// The number in the bytes at this place, the lowest first; nothing when they end before it.
std::optional<std::uint32_t> NumberAt(std::string_view bytes, std::size_t place, std::size_t count)
{
    if (place > bytes.size() || bytes.size() - place < count) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (std::size_t i = count; i > 0; --i) {
        number = number << bitsPerByte | static_cast<unsigned char>(bytes[place + i - 1]);
    }
    return number;
}

/// @return how many bytes a block's lines take; nothing when they are not all there.
std::optional<std::size_t>
BytesOfLines(std::string_view bytes, std::size_t offset, std::uint32_t count)
{
    std::size_t end = offset;
    for (std::uint32_t line = 0; line < count; ++line) {
        const std::string_view begin = bytes.substr(std::min(end, bytes.size()), maxLineBytes + 1);
        const std::size_t length = begin.find('\n');
        if (length == std::string_view::npos) {
            return std::nullopt;
        }
        end += length + 1;
    }
    return end - offset;
}

} // namespace

base::Result<void> CheckDebugBytes(std::string_view bytes)
{
    const base::Failure foreign{"it is no program debug file"};
    const base::Failure torn{"it is no whole program debug file"};
    const auto index = NumberAt(bytes, signature.size(), 4);
    const auto blocks = index ? NumberAt(bytes, *index, 4) : std::nullopt;
    if (!blocks || *index < headerBytes || *blocks == 0) {
        return foreign;
    }
    if ((bytes.size() - *index - 4) / recordBytes < *blocks) {
        return torn;
    }
    std::size_t linesBytes = 0;
    for (std::uint32_t block = 0; block < *blocks; ++block) {
        const std::size_t record = *index + 4 + block * recordBytes;
        const auto lines = NumberAt(bytes, record + nameBytes + 2, 2);
        const auto offset = NumberAt(bytes, record + nameBytes + 4, 4);
        const auto taken = BytesOfLines(bytes, *offset, *lines);
        // Blocks that share their lines would take for ever to look at.
        linesBytes += taken.value_or(0);
        if (!taken || linesBytes > bytes.size()) {
            return torn;
        }
    }
    return {};
}

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
