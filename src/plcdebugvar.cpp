#include "plcdebugvar.h"

#include "plcdebugvar_value.h"

#include <algorithm>
#include <cwchar>
#include <limits>

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

std::optional<long> AreaLimit(const PlcDebugVar& var)
{
    const VarArea* area = RowOf(varAreas, var.area);
    if (area == nullptr) {
        return std::nullopt;
    }
    if (area->value != eAreaDb) {
        return area->limit;
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
    const VarSize* known = RowOf(varSizes, size);
    return known != nullptr ? areaLimit - known->bytes + 1 : areaLimit;
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
    const VarArea* area = RowOf(varAreas, var.area);
    const bool isDb = var.area == eAreaDb;
    if (area == nullptr || (isDb && var.dbNumber == noDataBlock)) {
        return "";
    }
    const wxString prefix =
        isDb ? wxString::Format("DB%d.DB", var.dbNumber) : wxString(area->letter);
    if (IsTimerOrCounter(var.area)) {
        return prefix;
    }
    const VarSize* size = RowOf(varSizes, var.size);
    if (size == nullptr) {
        return "";
    }
    return size->value == eSizeBit && !isDb ? prefix : prefix + size->letter;
}

/// Writes the operand name into a request, at PLC_..._AT. A name too long for the record is cut.
void PutName(CMD_DATA& request, std::size_t place, wxString name)
{
    name.Truncate(std::min<std::size_t>(name.length(), PLC_CMD_SIZE - place - 1));
    PlcPutOperand(&request, place, name.mb_str(wxConvLibc));
    // The length word counts characters, also those that the locale writes in several bytes.
    request.length = static_cast<std::uint16_t>(place + name.length() + 1);
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
    const bool isText = address.find(L'\0') == wxString::npos; // a damaged list file may say other
    if (!isText || std::wcstol(address.wc_str(), nullptr, 10) < 0) {
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

wxString RefusalText(const AddressVerdict& verdict)
{
    if (!verdict.message) {
        return "";
    }
    return *verdict.message == TextId::AddressRange
               ? LanguageText(*verdict.message, static_cast<int>(verdict.bound))
               : LanguageText(*verdict.message);
}

wxString PlcDebugVar::GetVarName(bool withBlank) const
{
    const wxString prefix = NamePrefix(*this);
    if (prefix.empty() || !JudgeAddress(*this, address).valid) {
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
    const std::optional<std::int32_t> candidate = ParseValue(text.ToStdWstring(), format);
    if (!candidate) {
        error = LanguageText(TextId::ValueInvalid);
        return false;
    }
    const ValueRange range = RangeOfSize(size);
    if (*candidate > range.maximum) {
        error = LanguageText(TextId::ValueTooLarge, range.maximum);
        return false;
    }
    if (*candidate < range.minimum) {
        error = LanguageText(TextId::ValueTooSmall, range.minimum);
        return false;
    }
    value = *candidate;
    return true;
}

wxString PlcDebugVar::GetVarValueShow() const
{
    return ValueText(value, format, size);
}

wxString PlcDebugVar::GetVarFormatShow() const
{
    const VarFormat* known = RowOf(varFormats, format);
    return LanguageText(known != nullptr ? known->caption : TextId::FormatBinary);
}

CMD_DATA PlcDebugVar::GetVarCMD(eRequestVar kind, std::int16_t argument) const
{
    CMD_DATA request{};
    switch (kind) {
    case eDeleteVar:
        request = PlcMakeDeleteRequest(requestId, argument);
        break;
    case eWriteVar:
        request = PlcMakeWriteRequest("", value);
        PutName(request, PLC_WRITE_OPERAND_AT, GetVarName(false));
        break;
    case eReadVar:
        request = PlcMakeReadRequest(requestId, "");
        PutName(request, PLC_READ_OPERAND_AT, GetVarName(false));
        break;
    }
    return request;
}
