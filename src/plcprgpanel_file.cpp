#include "plcprgpanel_file.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <sys/types.h>

static_assert(sizeof(off_t) == sizeof(std::int64_t), "a file offset may need all of 32 bits");

namespace {

constexpr off_t indexOffsetPlace = 8;
constexpr std::size_t lineBufferSize = 256;

template <typename T> bool ReadInto(std::FILE* file, T& value)
{
    return std::fread(&value, sizeof value, 1, file) == 1;
}

bool IsLineEnd(wchar_t c)
{
    return c == L'\n' || c == L'\r';
}

bool IsAscii(const char* begin, const char* end)
{
    return std::all_of(begin, end, [](char c) { return static_cast<signed char>(c) >= 0; });
}

/// Takes every byte for the character of the same number.
std::wstring Widen(const char* begin, const char* end)
{
    std::wstring wide(static_cast<std::size_t>(end - begin), L'\0');
    std::transform(begin, end, wide.begin(), [](char c) { return static_cast<unsigned char>(c); });
    return wide;
}

DB_BAUSTEIN MakeLine(std::wstring text, std::int32_t& nextStep)
{
    text.erase(std::remove_if(text.begin(), text.end(), IsLineEnd), text.end());
    if (IsExecutable(text)) {
        return {L"?", L"-", std::move(text), nextStep++};
    }
    return {L"-", L"-", std::move(text), noStep};
}

} // namespace

PrgFile OpenPrgFile(const std::string& path)
{
    return PrgFile(std::fopen(path.c_str(), "rb"));
}

std::vector<DBG_BAUSTEIN_ENTRY> ReadBlockIndex(std::FILE* file)
{
    std::vector<DBG_BAUSTEIN_ENTRY> blocks;
    std::int32_t indexOffset = 0;
    std::int32_t count = 0;
    if (fseeko(file, indexOffsetPlace, SEEK_SET) != 0 || !ReadInto(file, indexOffset)) {
        return blocks;
    }
    if (indexOffset >= 0) {
        // The seek to a negative place would fail and leave the file where it stands.
        fseeko(file, indexOffset, SEEK_SET);
    }
    if (!ReadInto(file, count)) {
        return blocks;
    }
    DBG_BAUSTEIN_ENTRY block{};
    for (std::int32_t i = 0; i < count && ReadInto(file, block); ++i) {
        blocks.push_back(block);
    }
    return blocks;
}

std::vector<DB_BAUSTEIN> ReadBlockLines(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block)
{
    std::vector<DB_BAUSTEIN> lines;
    lines.reserve(block.lineCount);
    fseeko(file, static_cast<off_t>(block.fileOffset), SEEK_SET);
    std::array<char, lineBufferSize> buffer{};
    std::int32_t nextStep = block.firstStep;
    while (lines.size() < block.lineCount) {
        // At the end of the file the buffer keeps the last line, which then repeats.
        [[maybe_unused]] const char* read = std::fgets(buffer.data(), buffer.size(), file);
        lines.push_back(MakeLine(FromLocalText(buffer.data(), buffer.size()), nextStep));
    }
    return lines;
}

bool IsExecutable(std::wstring_view line)
{
    static constexpr std::array<std::wstring_view, 4> words = {
        L"NOP", L"BLD", L"NETWORK", L"TITLE"};
    const std::size_t colon = line.find(L':');
    const std::wstring_view part = colon == std::wstring_view::npos ? line : line.substr(colon + 1);
    return std::none_of(words.begin(), words.end(), [part](std::wstring_view word) {
        return part.find(word) != std::wstring_view::npos;
    });
}

std::wstring FromLocalText(const char* text, std::size_t size)
{
    const char* end = text + strnlen(text, size);
    if (IsAscii(text, end)) {
        return Widen(text, end);
    }
    const std::string terminated(text, end);
    std::wstring wide(terminated.size(), L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), terminated.c_str(), wide.size());
    if (length == static_cast<std::size_t>(-1)) {
        return Widen(text, end);
    }
    wide.resize(length);
    return wide;
}
