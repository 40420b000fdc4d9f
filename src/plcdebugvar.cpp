#include "plcdebugvar.h"

#include "plcmodal.h"

#include <charconv>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <limits>

static_assert(std::numeric_limits<float>::is_iec559, "values travel as IEEE 754 singles");

namespace {

constexpr int noIndex = -1; // a block that belongs to no family

} // namespace

// One row per line reads as the table that it is.
// clang-format off
const std::array<DataBlock, dataBlockCount> varDBs{{
    {1, TextId::Db1, noIndex, 2302},
    {20, TextId::Db20, noIndex, 1200},
    {2, TextId::Db2, noIndex, 32},
    {3, TextId::Db3, noIndex, 32},
    {4, TextId::Db4, noIndex, 17},
    {10, TextId::Db10, noIndex, 1024},
    {15, TextId::Db15, noIndex, 1024},
    {21, TextId::Db21, noIndex, 738},
    {25, TextId::Db25, noIndex, 1200},
    {26, TextId::Db26, noIndex, 738},
    {50, TextId::DbFamily50, 0, 128},
    {51, TextId::DbFamily50, 1, 128},
    {52, TextId::DbFamily50, 2, 128},
    {60, TextId::DbFamily60, 0, 128},
    {61, TextId::DbFamily60, 1, 128},
    {62, TextId::DbFamily60, 2, 128},
    {63, TextId::DbFamily60, 3, 128},
    {64, TextId::DbFamily64, 0, 82},
    {65, TextId::DbFamily64, 1, 82},
    {66, TextId::DbFamily64, 2, 82},
    {67, TextId::DbFamily64, 3, 82},
    {68, TextId::DbFamily64, 4, 82},
    {69, TextId::DbFamily64, 5, 82},
    {70, TextId::DbFamily64, 6, 82},
    {71, TextId::DbFamily64, 7, 82},
    {72, TextId::DbFamily64, 8, 82},
    {73, TextId::DbFamily64, 9, 82},
    {74, TextId::DbFamily64, 10, 82},
    {75, TextId::DbFamily64, 11, 82},
    {76, TextId::DbFamily64, 12, 82},
    {77, TextId::DbFamily64, 13, 82},
    {78, TextId::DbFamily64, 14, 82},
    {79, TextId::DbFamily64, 15, 82},
    {95, TextId::Db95, noIndex, 208},
    {100, TextId::Db100, noIndex, 1000},
}};

// clang-format on

namespace {

/// Bytes in A, E, M, T and Z; a data block brings its own limit.
constexpr std::array<long, 6> areaLimits{64, 64, 512, 0, 128, 64};

std::optional<long> AreaLimit(const PlcDebugVar& var)
{
    if (var.area < 0 || static_cast<std::size_t>(var.area) >= areaLimits.size()) {
        return std::nullopt;
    }
    if (var.area != eAreaDb) {
        return areaLimits[static_cast<std::size_t>(var.area)];
    }
    for (const DataBlock& block : varDBs) {
        if (block.number == var.dbNumber) {
            return block.limit;
        }
    }
    return std::nullopt;
}

/// The bound that a byte address stays below, so that the whole operand lies in the area.
long AddressBound(long areaLimit, std::int32_t size)
{
    switch (size) {
    case eSizeWord:
        return areaLimit - 1;
    case eSizeDouble:
        return areaLimit - 3;
    default:
        return areaLimit;
    }
}

AddressVerdict Refused(std::optional<TextId> message = std::nullopt, long bound = 0)
{
    return {false, message, bound};
}

/// A decimal number that is the whole text and fits 32 bits, on every architecture.
std::optional<long> WholeNumber(const wxString& text)
{
    long number = 0;
    if (!text.ToLong(&number) || number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return number;
}

/// The letters of the name before the address; empty when there are none.
wxString NamePrefix(const PlcDebugVar& var)
{
    static const std::array<const char*, 6> areaLetters{"A", "E", "M", "", "T", "Z"};
    static const std::array<const char*, 4> sizeLetters{"", "B", "W", "D"};

    if (var.area < 0 || static_cast<std::size_t>(var.area) >= areaLetters.size()) {
        return "";
    }
    const bool isDb = var.area == eAreaDb;
    if (isDb && var.dbNumber == -1) {
        return "";
    }
    const wxString area = isDb ? wxString::Format("DB%d.DB", var.dbNumber)
                               : wxString(areaLetters[static_cast<std::size_t>(var.area)]);
    if (var.area == eAreaTimer || var.area == eAreaCounter) {
        return area;
    }
    if (var.size < 0 || static_cast<std::size_t>(var.size) >= sizeLetters.size()) {
        return "";
    }
    return area +
           (isDb && var.size == eSizeBit ? "X" : sizeLetters[static_cast<std::size_t>(var.size)]);
}

wxString HexadecimalText(std::int32_t value, std::int32_t size)
{
    const auto bits = static_cast<unsigned>(value);
    switch (size) {
    case eSizeBit:
    case eSizeByte:
        return wxString::Format("%02X", bits);
    case eSizeWord:
        return wxString::Format("%04X", bits);
    case eSizeDouble:
        return wxString::Format("%08X", bits);
    default:
        return "-1";
    }
}

wxString BinaryText(std::int32_t value, std::int32_t size)
{
    static const std::array<unsigned, 4> bitCounts{1, 8, 16, 32};
    if (size < 0 || static_cast<std::size_t>(size) >= bitCounts.size()) {
        return "-1";
    }
    wxString text;
    for (unsigned bit = bitCounts[static_cast<std::size_t>(size)]; bit-- > 0;) {
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

std::optional<Parsed> ParseValue(const std::wstring& text, std::int32_t format)
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

struct ValueRange
{
    std::int32_t minimum;
    std::int32_t maximum;
};

template <typename Value> constexpr ValueRange RangeOf()
{
    return {std::numeric_limits<Value>::min(), std::numeric_limits<Value>::max()};
}

ValueRange RangeOfSize(std::int32_t size)
{
    switch (size) {
    case eSizeBit:
        return {0, 1};
    case eSizeByte:
        return RangeOf<std::int8_t>();
    case eSizeWord:
        return RangeOf<std::int16_t>();
    case eSizeDouble:
        return RangeOf<std::int32_t>();
    default:
        return {-1, -1};
    }
}

/// Writes a little-endian field at an offset of the record.
template <typename Field> void PutField(CMD_DATA& record, std::size_t offset, Field field)
{
    std::memcpy(record.payload + (offset - PLC_CMD_HEADER_SIZE), &field, sizeof field);
}

/// Writes the name with its zero byte from an offset on and the length that goes with it. A name
/// too long for the record is cut.
void PutName(CMD_DATA& record, std::size_t offset, wxString name)
{
    const std::size_t room = PLC_CMD_SIZE - offset - 1;
    name.Truncate(std::min(name.length(), room));
    record.length = static_cast<std::uint16_t>(offset + name.length() + 1);

    const wxCharBuffer bytes = name.mb_str(wxConvLibc);
    std::memcpy(
        record.payload + (offset - PLC_CMD_HEADER_SIZE),
        bytes.data(),
        std::min(bytes.length(), room));
}

} // namespace

bool PlcDebugVar::operator==(const PlcDebugVar& other) const
{
    return area == other.area && format == other.format && size == other.size &&
           address == other.address && dbNumber == other.dbNumber && value == other.value &&
           requestId == other.requestId;
}

AddressVerdict JudgeAddress(const PlcDebugVar& var, const wxString& address)
{
    if (std::wcstol(address.wc_str(), nullptr, 10) < 0) {
        return Refused(TextId::AddressInvalid);
    }
    const std::optional<long> areaLimit = AreaLimit(var);
    if (!areaLimit) {
        return Refused();
    }
    const std::size_t point = address.find('.');
    const bool isBit = var.size == eSizeBit;
    if (isBit && point == wxString::npos) {
        return Refused(TextId::AddressNeedsBit);
    }
    // One digit 0 to 7 anywhere behind the point is enough.
    if (isBit && address.find_first_of("01234567", point) == wxString::npos) {
        return Refused(TextId::AddressBitRange);
    }
    const std::optional<long> byteNumber = WholeNumber(isBit ? address.Left(point) : address);
    if (!byteNumber) {
        const bool hasBit = !isBit && point != wxString::npos;
        return Refused(hasBit ? TextId::AddressHasBit : TextId::AddressInvalid);
    }
    const long bound = AddressBound(*areaLimit, var.size);
    if (*byteNumber >= bound) {
        return Refused(TextId::AddressRange, bound);
    }
    return {true, std::nullopt, bound};
}

bool PlcDebugVar::CheckVarAddress(const wxString& text, bool showErrors) const
{
    const AddressVerdict verdict = JudgeAddress(*this, text);
    if (showErrors && verdict.message) {
        ShowMessage(
            TextId::AddressCaption,
            *verdict.message == TextId::AddressRange
                ? LanguageText(*verdict.message, static_cast<int>(verdict.bound))
                : LanguageText(*verdict.message));
    }
    return verdict.valid;
}

wxString PlcDebugVar::GetVarName(bool withBlank) const
{
    const wxString prefix = NamePrefix(*this);
    if (prefix.empty() || !CheckVarAddress(address, false)) {
        return "";
    }
    return prefix + (withBlank ? " " : "") + address;
}

void PlcDebugVar::SetVarValue(long newValue)
{
    switch (size) {
    case eSizeByte:
        value = static_cast<std::int8_t>(newValue);
        break;
    case eSizeWord:
        value = static_cast<std::int16_t>(newValue);
        break;
    default:
        value = static_cast<std::int32_t>(newValue);
    }
}

bool PlcDebugVar::SetVarValue(const wxString& text, wxString& error)
{
    const std::wstring& typed = text.ToStdWstring();
    const std::optional<Parsed> parsed = ParseValue(typed, format);
    if (!parsed || parsed->consumed != typed.size()) {
        error = LanguageText(TextId::ValueInvalid);
        return false;
    }
    const auto candidate = static_cast<std::int32_t>(parsed->bits);
    const ValueRange range = RangeOfSize(size);
    if (candidate > range.maximum) {
        error = LanguageText(TextId::ValueTooLarge, range.maximum);
        return false;
    }
    if (candidate < range.minimum) {
        error = LanguageText(TextId::ValueTooSmall, range.minimum);
        return false;
    }
    value = candidate;
    return true;
}

wxString PlcDebugVar::GetVarValueShow() const
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
        return "-1";
    }
}

wxString PlcDebugVar::GetVarFormatShow() const
{
    switch (format) {
    case eFormatDecimal:
        return LanguageText(TextId::FormatDecimal);
    case eFormatHexadecimal:
        return LanguageText(TextId::FormatHexadecimal);
    case eFormatFloat:
        return LanguageText(TextId::FormatFloat);
    default:
        return LanguageText(TextId::FormatBinary);
    }
}

CMD_DATA PlcDebugVar::GetVarCMD(eRequestVar kind, std::int16_t argument) const
{
    constexpr std::size_t argumentOffset = 6;
    constexpr std::size_t valueOffset = 6;
    constexpr std::size_t nameOffsetInRead = 6;
    constexpr std::size_t nameOffsetInWrite = 10;

    CMD_DATA record{};
    record.key = requestId;
    switch (kind) {
    case eDeleteVar:
        record.command = PLC_CMD_DELETE_VAR;
        record.length = argumentOffset + sizeof argument;
        PutField(record, argumentOffset, argument);
        break;
    case eWriteVar:
        record.command = PLC_CMD_WRITE_VAR;
        record.key = 0; // a write is not answered
        PutField(record, valueOffset, value);
        PutName(record, nameOffsetInWrite, GetVarName(false));
        break;
    case eReadVar:
        record.command = PLC_CMD_READ_VAR;
        PutName(record, nameOffsetInRead, GetVarName(false));
        break;
    }
    return record;
}
