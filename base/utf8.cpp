#include "utf8.h"

#include <cstdint>
#include <iterator>

namespace base {

namespace {

// A byte that continues a character, and the bits of the character in it.
constexpr unsigned tailMask = 0xC0;
constexpr unsigned tailLead = 0x80;
constexpr unsigned tailBits = 6;

/// The characters of so many bytes: what the first byte begins with, and the first of them.
struct Form
{
    unsigned mask;
    unsigned lead;
    std::uint32_t smallest;
};

constexpr Form forms[] = {
    {0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}};

constexpr std::uint32_t firstSurrogate = 0xD800;
constexpr std::uint32_t firstLowSurrogate = 0xDC00;
constexpr std::uint32_t lastSurrogate = 0xDFFF;
constexpr unsigned surrogateBits = 10;
constexpr std::uint32_t lastCharacter = 0x10FFFF;

void Append(std::string& text, std::uint32_t character)
{
    std::size_t tails = std::size(forms) - 1;
    while (character < forms[tails].smallest) {
        --tails;
    }
    text += static_cast<char>(forms[tails].lead | character >> (tailBits * tails));
    while (tails-- > 0) {
        text += static_cast<char>(tailLead | (character >> (tailBits * tails) & ~tailMask & 0xFFU));
    }
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

/// @param high, low where in each pair of bytes which one lies.
std::string FromUtf16(std::string_view pairs, std::size_t high, std::size_t low)
{
    std::string text;
    std::uint32_t before = 0; // the first half of a character of two pairs
    for (; pairs.size() >= 2; pairs.remove_prefix(2)) {
        const std::uint32_t unit = std::uint32_t{static_cast<unsigned char>(pairs[high])} << 8U |
                                   static_cast<unsigned char>(pairs[low]);
        if (unit >= firstSurrogate && unit < firstLowSurrogate) {
            before = unit;
        } else if (unit < firstLowSurrogate || unit > lastSurrogate) {
            Append(text, unit);
            before = 0;
        } else if (before != 0) {
            Append(
                text,
                forms[3].smallest + ((before - firstSurrogate) << surrogateBits) + unit -
                    firstLowSurrogate);
            before = 0;
        }
    }
    return text;
}

std::string FromLatin1(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        Append(text, static_cast<unsigned char>(byte));
    }
    return text;
}

} // namespace

std::size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (std::size_t length = 1; length <= std::size(forms); ++length) {
        const Form& form = forms[length - 1];
        if ((byte(0) & form.mask) != form.lead) {
            continue;
        }
        if (text.size() < length) {
            return 0;
        }
        std::uint32_t character = byte(0) & ~form.mask;
        for (std::size_t i = 1; i < length; ++i) {
            if (!ContinuesCharacter(text[i])) {
                return 0;
            }
            character = character << tailBits | (byte(i) & ~tailMask);
        }
        const bool isSurrogate = character >= firstSurrogate && character <= lastSurrogate;
        return character < form.smallest || character > lastCharacter || isSurrogate ? 0 : length;
    }
    return 0;
}

bool ContinuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & tailMask) == tailLead;
}

std::string Utf8Of(std::string_view file)
{
    const std::string_view front = file.substr(0, 2);
    std::string text;
    if (front == "\xFF\xFE") {
        text = FromUtf16(file, 1, 0);
    } else if (front == "\xFE\xFF") {
        text = FromUtf16(file, 0, 1);
    } else {
        text = IsUtf8(file) ? std::string(file) : FromLatin1(file);
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    while (text.compare(0, byteOrderMark.size(), byteOrderMark) == 0) {
        text.erase(0, byteOrderMark.size());
    }
    return text;
}

} // namespace base
