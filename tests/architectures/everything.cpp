#include "plcdebugvar.h"
#include "plcprgpanel_state.h"
#include "plcvarpanel_file.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

// Writes down what the plug-in says and sends over the whole grammar: every request, display and
// message, a line for each. The builds of two architectures have to write the same.

namespace {

constexpr std::array<eVarSize, 4> sizes{eSizeBit, eSizeByte, eSizeWord, eSizeDouble};
constexpr std::array<eVarFormat, 4> formats{
    eFormatDecimal, eFormatHexadecimal, eFormatBinary, eFormatFloat};

/// Raw values: the ends of each size, and singles: 1, -2, 0.1, a third, the largest, the smallest,
/// one of more than 9 digits, infinities, numbers that are none.
constexpr std::array<std::int64_t, 29> values{
    0,          1,           -1,          2,          127,        128,
    -128,       -129,        255,         256,        32767,      32768,
    -32768,     -32769,      65535,       65536,      2147483647, -2147483647 - 1,
    0x3F800000, -0x40000000, 0x3DCCCCCD,  0x3EAAAAAB, 0x7F7FFFFF, 0x00000001,
    0x4F32D05E, 0x7F800000,  -0x00800000, 0x7FC00000, 0x7F800001};

constexpr std::array<std::uint16_t, 5> keys{0, 1, 0xFF, 0x100, 0xFFFF};

/// What an operator may type as a value.
const std::array<const wchar_t*, 58> entries{
    L"",
    L" ",
    L"0",
    L"1",
    L"2",
    L"-1",
    L"+1",
    L" 1",
    L"1 ",
    L"007",
    L"--1",
    L"1,5",
    L"1.5",
    L"127",
    L"128",
    L"-128",
    L"-129",
    L"255",
    L"256",
    L"-255",
    L"32767",
    L"32768",
    L"-32768",
    L"-32769",
    L"65535",
    L"65536",
    L"2147483647",
    L"2147483648",
    L"-2147483648",
    L"-2147483649",
    L"4294967295",
    L"4294967296",
    L"-4294967295",
    L"-4294967296",
    L"18446744073709551615",
    L"18446744073709551616",
    L"99999999999999999999",
    L"7F",
    L"ff",
    L"0xFF",
    L"0x",
    L"-0x80",
    L"7FFFFFFF",
    L"80000000",
    L"FFFFFFFF",
    L"100000000",
    L"1111111",
    L"11111111111111111111111111111111",
    L"100000000000000000000000000000000",
    L"0.1",
    L"-0.0",
    L"16777217",
    L"3.4028235e38",
    L"3.4028236e38",
    L"1e-46",
    L"0x1.8p3",
    L"inf",
    L"nan"};

std::string Text(const wxString& text)
{
    return "[" + text.utf8_string() + "]";
}

/// The meaningful bytes of a record; what else is in it shows up, too.
std::string Bytes(const CMD_DATA& record)
{
    std::array<unsigned char, sizeof record> bytes{};
    std::memcpy(bytes.data(), &record, sizeof record);
    std::size_t end = bytes.size();
    while (end > record.length && bytes[end - 1] == 0) {
        --end;
    }
    std::string text;
    for (std::size_t i = 0; i < end; ++i) {
        constexpr const char* digits = "0123456789ABCDEF";
        text += digits[bytes[i] / 16U];
        text += digits[bytes[i] % 16U];
    }
    return text;
}

std::string Name(const PlcDebugVar& var)
{
    return "area " + std::to_string(var.area) + " block " + std::to_string(var.dbNumber) +
           " size " + std::to_string(var.size) + " address " + Text(var.address);
}

/// Every area and block in every size; without an address.
std::vector<PlcDebugVar> Places()
{
    std::vector<std::pair<eVarArea, std::int32_t>> areas{
        {eAreaOutput, -1},
        {eAreaInput, -1},
        {eAreaFlag, -1},
        {eAreaTimer, -1},
        {eAreaCounter, -1},
        {eAreaDb, -1},
        {eAreaDb, 5}}; // a block that does not exist
    for (const DataBlock& block : varDBs) {
        areas.emplace_back(eAreaDb, block.number);
    }
    std::vector<PlcDebugVar> places;
    for (const auto& [area, block] : areas) {
        for (const eVarSize size : sizes) {
            PlcDebugVar place;
            place.area = area;
            place.dbNumber = block;
            place.size = size;
            places.push_back(place);
        }
    }
    return places;
}

/// Addresses around the ends of a place, those of another size, and nonsense.
std::vector<wxString> AddressesFor(const PlcDebugVar& place)
{
    const long bound =
        JudgeAddress(place, place.size == eSizeBit ? "2147483647.0" : "2147483647").bound;
    std::vector<wxString> addresses{"", " ", ".", "x", "1x", "-1", "+1", " 1", "1 ", "001", "0x1"};
    std::vector<wxString> numbers{
        "-0",
        "2147483647",
        "2147483648",
        "4294967295",
        "4294967296",
        "9223372036854775808",
        "99999999999999999999"};
    for (const long number : {-1L, 0L, 1L, bound - 2, bound - 1, bound, bound + 1}) {
        numbers.push_back(wxString::Format("%ld", number));
    }
    for (const wxString& number : numbers) {
        for (const char* bit : {"", ".", ".0", ".7", ".8", ".x", ".07", ".-1"}) {
            addresses.push_back(number + bit);
        }
    }
    return addresses;
}

void TellListLine(const PlcDebugVar& var)
{
    const wxString line = ListFileText({var});
    std::printf("list %s", Text(line).c_str());
    if (const auto read = ParseListLine(line)) {
        std::printf(
            " %s %s %d %d",
            Name(read->var).c_str(),
            Text(read->address).c_str(),
            read->var.format,
            static_cast<int>(read->valid));
    }
    std::printf("\n");
}

void TellValues(PlcDebugVar var)
{
    for (const eVarFormat format : formats) {
        var.format = format;
        TellListLine(var);
        for (const std::int64_t value : values) {
            var.SetVarValue(static_cast<long>(value));
            std::printf(
                "value %d %s %s\n",
                var.value,
                Text(var.GetVarValueShow()).c_str(),
                Bytes(var.GetVarCMD(eWriteVar, -1)).c_str());
        }
    }
}

void TellOperand(PlcDebugVar var)
{
    const AddressVerdict verdict = JudgeAddress(var, var.address);
    std::printf(
        "%s: %d %s %s %s\n",
        Name(var).c_str(),
        static_cast<int>(verdict.valid),
        Text(RefusalText(verdict)).c_str(),
        Text(var.GetVarName(false)).c_str(),
        Text(var.GetVarName(true)).c_str());
    for (const std::uint16_t key : keys) {
        var.requestId = key;
        for (const std::int16_t argument : {PLC_DELETE_ARG_START, PLC_DELETE_ARG_RELEASE}) {
            std::printf("delete %s\n", Bytes(var.GetVarCMD(eDeleteVar, argument)).c_str());
        }
        std::printf("read %s\n", Bytes(var.GetVarCMD(eReadVar, -1)).c_str());
    }
    if (verdict.valid) {
        TellValues(var);
    }
}

void TellEntries()
{
    for (const eVarSize size : sizes) {
        for (const eVarFormat format : formats) {
            for (const wchar_t* entry : entries) {
                PlcDebugVar var;
                var.size = size;
                var.format = format;
                wxString refusal;
                const bool taken = var.SetVarValue(wxString(entry), refusal);
                std::printf(
                    "entry %s %d %s: %d %s %d %s\n",
                    Text(entry).c_str(),
                    size,
                    Text(var.GetVarFormatShow()).c_str(),
                    static_cast<int>(taken),
                    Text(refusal).c_str(),
                    var.value,
                    Text(var.GetVarValueShow()).c_str());
            }
        }
    }
}

void TellProgramState()
{
    for (const std::int64_t first : values) {
        for (const std::int64_t count : {0, 1, 2, 97, 98}) {
            const auto last =
                static_cast<std::int32_t>(static_cast<std::uint32_t>(first + count - 1));
            const auto step = static_cast<std::int32_t>(first);
            std::printf("state %d %d %s\n", step, last, Bytes(PrgStateRequest(step, last)).c_str());
        }
    }
}

void TellAnswer(std::int32_t last)
{
    CMD_DATA record{};
    for (std::size_t i = 0; i < sizeof record.payload; ++i) {
        record.payload[i] = static_cast<std::uint8_t>(i % 251);
    }
    PlcPutSteps(&record, 0, last);
    for (std::int64_t i = 0; i <= last && i < 200; ++i) {
        std::printf("answer %d %d %d\n", last, PlcStepState(&record, i), PlcStepValue(&record, i));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: everything LANGUAGE-FOLDER LANGUAGE\n");
        return 2;
    }
    IntlLangImp().SetFilePath(wxString::FromUTF8(argv[1]).wc_str());
    IntlLangImp().SetLanguage(wxString::FromUTF8(argv[2]).wc_str());

    for (PlcDebugVar& place : Places()) {
        for (const wxString& address : AddressesFor(place)) {
            place.address = address;
            TellOperand(place);
        }
    }
    TellEntries();
    TellProgramState();
    for (const std::int32_t last : {0, 1, 96, 97, 98, 499, 2147483647}) {
        TellAnswer(last);
    }
    return 0;
}
