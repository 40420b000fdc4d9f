#include "plcdebugvar_value.h"

#include <array>
#include <charconv>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <limits>

static_assert(std::numeric_limits<float>::is_iec559, "values travel as IEEE 754 singles");

namespace {

const char* const noText = "-1"; ///< For a format or size that does not exist.

wxString HexadecimalText(std::int32_t value, std::int32_t size)
{
    const VarSize* known = RowOf(varSizes, size);
    if (known == nullptr) {
        return noText;
    }
    const int digits = static_cast<int>(2 * known->bytes);
    return wxString::Format("%0*X", digits, static_cast<unsigned>(value));
}

wxString BinaryText(std::int32_t value, std::int32_t size)
{
    const VarSize* known = RowOf(varSizes, size);
    if (known == nullptr) {
        return noText;
    }
    wxString text;
    for (unsigned bit = known->bits; bit-- > 0;) {
        text += ((static_cast<unsigned>(value) >> bit) & 1U) != 0 ? '1' : '0';
    }
    return text;
}

float AsFloat(std::int32_t bits)
{
    float number = 0;
    static_assert(sizeof number == sizeof bits);
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/// "%.6f" with a decimal point, whatever locale the host has set.
wxString FloatText(std::int32_t bits)
{
    std::array<char, 64> text{}; // sign, 39 digits, point and 6 digits at the most
    const auto end = std::to_chars(
        text.data(), text.data() + text.size(), double{AsFloat(bits)}, std::chars_format::fixed, 6);
    return wxString::FromAscii(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
}

/// A candidate value, and how much of the text it took.
struct Parsed
{
    std::uint32_t bits;
    std::size_t consumed;
};

std::optional<unsigned> DigitValue(wchar_t digit, unsigned base)
{
    unsigned value = 0;
    if (digit >= L'0' && digit <= L'9') {
        value = static_cast<unsigned>(digit - L'0');
    } else if (digit >= L'a' && digit <= L'f') {
        value = static_cast<unsigned>(digit - L'a') + 10;
    } else if (digit >= L'A' && digit <= L'F') {
        value = static_cast<unsigned>(digit - L'A') + 10;
    } else {
        return std::nullopt;
    }
    return value < base ? std::optional<unsigned>(value) : std::nullopt;
}

/// The unsigned-long conversion of a machine with 32-bit longs: wraps for a minus sign, saturates
/// for a number too large. The C library's own has 64 bits on 64-bit machines.
Parsed ParseUnsigned(const std::wstring& text, unsigned base)
{
    std::size_t i = 0;
    while (i < text.size() && std::iswspace(static_cast<std::wint_t>(text[i])) != 0) {
        ++i;
    }
    const bool isNegative = i < text.size() && text[i] == L'-';
    if (isNegative || (i < text.size() && text[i] == L'+')) {
        ++i;
    }
    if (base == 16 && i + 2 < text.size() && text[i] == L'0' &&
        (text[i + 1] == L'x' || text[i + 1] == L'X') && DigitValue(text[i + 2], base)) {
        i += 2;
    }
    const std::size_t firstDigit = i;
    std::uint64_t magnitude = 0;
    bool saturated = false;
    for (; i < text.size(); ++i) {
        const std::optional<unsigned> digit = DigitValue(text[i], base);
        if (!digit) {
            break;
        }
        magnitude = magnitude * base + *digit;
        if (magnitude > std::numeric_limits<std::uint32_t>::max()) {
            magnitude = 0; // the digits that follow only have to be consumed
            saturated = true;
        }
    }
    if (i == firstDigit) {
        return {0, 0};
    }
    if (saturated) {
        return {std::numeric_limits<std::uint32_t>::max(), i};
    }
    const auto bits = static_cast<std::uint32_t>(magnitude);
    return {isNegative ? 0U - bits : bits, i};
}

Parsed ParseFloat(const std::wstring& text)
{
    // The host's locale may want a comma; it must not be changed for a moment either, since other
    // threads of the host may be printing numbers.
    static const locale_t cNumbers = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    wchar_t* end = nullptr;
    const auto number = static_cast<float>(wcstod_l(text.c_str(), &end, cNumbers));
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return {bits, static_cast<std::size_t>(end - text.c_str())};
}

std::optional<Parsed> ParseAs(const std::wstring& text, std::int32_t format)
{
    switch (format) {
    case eFormatDecimal:
        return ParseUnsigned(text, 10);
    case eFormatHexadecimal:
        return ParseUnsigned(text, 16);
    case eFormatBinary:
        return ParseUnsigned(text, 2);
    case eFormatFloat:
        return ParseFloat(text);
    default:
        return std::nullopt;
    }
}

} // namespace

wxString EnteredText(const wxString& text)
{
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    const bool endsInLineEnd = text.find_last_of("\r\n") + 1 == text.length();
    return last != wxString::npos && endsInLineEnd ? text.Left(last + 1) : text;
}

std::optional<std::int32_t> ParseValue(const std::wstring& text, std::int32_t format)
{
    const std::optional<Parsed> parsed = ParseAs(text, format);
    if (!parsed || parsed->consumed != text.size()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(parsed->bits);
}

wxString ValueText(std::int32_t value, std::int32_t format, std::int32_t size)
{
    switch (format) {
    case eFormatDecimal:
        return wxString::Format("%d", value);
    case eFormatHexadecimal:
        return HexadecimalText(value, size);
    case eFormatBinary:
        return BinaryText(value, size);
    case eFormatFloat:
        return FloatText(value);
    default:
        return noText;
    }
}

ValueRange RangeOfSize(std::int32_t size)
{
    const VarSize* known = RowOf(varSizes, size);
    return known != nullptr ? known->range : ValueRange{-1, -1};
}
