#include "plcprgpanel_file.h"

#include <ktcore/ktopenfile.h>

#include <wx/string.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <sys/types.h>

static_assert(sizeof(off_t) == sizeof(std::int64_t), "a file offset may need all of 32 bits");

namespace {

constexpr off_t indexOffsetPlace = 8;
constexpr std::size_t lineBufferSize = 256;
constexpr unsigned maxAscii = 0x7F;

template <typename T> bool ReadInto(std::FILE* file, T& value)
{
    return std::fread(&value, sizeof value, 1, file) == 1;
}

bool IsAscii(const char* begin, const char* end)
{
    unsigned bits = 0;
    for (const char* c = begin; c != end; ++c) {
        bits |= static_cast<unsigned char>(*c);
    }
    return bits <= maxAscii;
}

/// Takes every byte for the character of the same number.
std::wstring Widen(const char* begin, const char* end)
{
    return {
        reinterpret_cast<const unsigned char*>(begin), reinterpret_cast<const unsigned char*>(end)};
}

/// @return nothing when it is no text in the locale's encoding.
std::optional<std::wstring> FromLocale(const std::string& text)
{
    std::wstring wide(text.size(), L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), text.c_str(), wide.size());
    if (length == static_cast<std::size_t>(-1)) {
        return std::nullopt;
    }
    wide.resize(length);
    return wide;
}

void RemoveAll(std::wstring& text, wchar_t c)
{
    // Mostly there is one, at the end, or none: finding it first is what makes this quick.
    const std::size_t first = text.find(c);
    if (first != std::wstring::npos) {
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(first);
        text.erase(std::remove(begin, text.end(), c), text.end());
    }
}

} // namespace

PrgFile OpenPrgFile(const std::string& path)
{
    return PrgFile(KtOpenFile(path.c_str()));
}

std::vector<DBG_BAUSTEIN_ENTRY> ReadBlockIndex(std::FILE* file)
{
    std::vector<DBG_BAUSTEIN_ENTRY> blocks;
    std::int32_t indexOffset = 0;
    std::int32_t count = 0;
    if (fseeko(file, indexOffsetPlace, SEEK_SET) != 0 || !ReadInto(file, indexOffset)) {
        return blocks;
    }
    // The seek to a negative place fails and leaves the file where it stands.
    fseeko(file, indexOffset, SEEK_SET);
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
        DB_BAUSTEIN& line = lines.emplace_back();
        line.text = FromLocalText(buffer.data(), buffer.size());
        RemoveAll(line.text, L'\n');
        RemoveAll(line.text, L'\r');
        const bool executable = IsExecutable(line.text);
        line.state = executable ? L'?' : L'-';
        line.value = noValue;
        line.step = executable ? nextStep++ : noStep;
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
    const auto local = FromLocale({text, end});
    return local ? *local : Widen(text, end);
}

std::wstring FromLocalPath(const char* path, std::size_t size)
{
    const std::string terminated(path, strnlen(path, size));
    if (const auto local = FromLocale(terminated)) {
        return *local;
    }
    const wxString utf8 = wxString::FromUTF8(terminated);
    return utf8.empty() ? FromLocalText(path, size) : utf8.ToStdWstring();
}
