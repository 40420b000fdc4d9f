#include "test_plcdebugvar_value.h"

#include "plcdebugvar_value.h"

#include <climits>
#include <limits>
#include <string>
#include <vector>

namespace {

/// What a typed text gives: a value, or the message of a refusal.
struct EntryCase
{
    eVarFormat format;
    eVarSize size;
    wxString text;
    std::int32_t value; ///< When there is no error.
    const char* error;  ///< Empty when the text is accepted.
};

void ExpectEntry(const EntryCase& given)
{
    SCOPED_TRACE(
        "format " + std::to_string(given.format) + ", size " + std::to_string(given.size) + ", \"" +
        given.text.ToStdString() + '"');
    constexpr std::int32_t before = 77;
    PlcDebugVar var = Operand(given.format, given.size, before);
    wxString error;

    const bool accepted = var.SetVarValue(given.text, error);

    EXPECT_EQ(accepted, *given.error == '\0');
    EXPECT_EQ(var.value, accepted ? given.value : before);
    EXPECT_EQ(error, given.error);
}

const char* const accepted = "";
const char* const invalid = "T89";

const auto nameOfLocale = [](const testing::TestParamInfo<const char*>& info) {
    std::string name;
    for (const char letter : std::string(info.param)) {
        name += std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
    }
    return name;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(
    Locale, DebugVarValue, testing::Values("C", "C.UTF-8", "de_DE.UTF-8"), nameOfLocale);

TEST_P(DebugVarValue, ByteInDecimalIsReadInItsSignedRange)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatDecimal, eSizeByte, "127", 127, accepted},
             {eFormatDecimal, eSizeByte, "128", 0, "T100 127"},
             {eFormatDecimal, eSizeByte, "-128", -128, accepted},
             {eFormatDecimal, eSizeByte, "-129", 0, "T106 -128"},
             {eFormatDecimal, eSizeByte, "", 0, accepted},
             {eFormatDecimal, eSizeByte, "12a", 0, invalid},
             {eFormatDecimal, eSizeByte, "+7", 7, accepted},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, BitIsZeroOrOne)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatDecimal, eSizeBit, "1", 1, accepted},
             {eFormatDecimal, eSizeBit, "0", 0, accepted},
             {eFormatDecimal, eSizeBit, "2", 0, "T100 1"},
             {eFormatDecimal, eSizeBit, "-1", 0, "T106 0"},
             {eFormatBinary, eSizeBit, "1", 1, accepted},
             {eFormatBinary, eSizeBit, "10", 0, "T100 1"},
             {eFormatHexadecimal, eSizeBit, "F", 0, "T100 1"},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, WordInHexadecimalKeepsTheSignedRange)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatHexadecimal, eSizeWord, "7FFF", 0x7FFF, accepted},
             {eFormatHexadecimal, eSizeWord, "8000", 0, "T100 32767"},
             {eFormatHexadecimal, eSizeWord, "0x10", 16, accepted},
             {eFormatHexadecimal, eSizeWord, "0X1f", 31, accepted},
             {eFormatHexadecimal, eSizeWord, "-8000", -32768, accepted},
             {eFormatHexadecimal, eSizeWord, "-8001", 0, "T106 -32768"},
             {eFormatHexadecimal, eSizeWord, "FFFFFFFF", -1, accepted},
             {eFormatHexadecimal, eSizeByte, "7F", 127, accepted},
             {eFormatHexadecimal, eSizeByte, "FF", 0, "T100 127"},
             {eFormatHexadecimal, eSizeByte, "FFFFFFFF", -1, accepted},
             {eFormatHexadecimal, eSizeWord, "G", 0, invalid},
             {eFormatHexadecimal, eSizeWord, "0x", 0, invalid},
             {eFormatHexadecimal, eSizeWord, "0xG", 0, invalid},
             {eFormatHexadecimal, eSizeWord, "1x", 0, invalid},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, DoubleWordInBinaryTakes32Bits)
{
    const wxString ones('1', 32);
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatBinary, eSizeDouble, ones, -1, accepted},
             {eFormatBinary, eSizeDouble, "2", 0, invalid},
             {eFormatBinary, eSizeDouble, "0b1", 0, invalid},
             {eFormatBinary, eSizeDouble, "-1", -1, accepted},
             {eFormatBinary, eSizeDouble, "1" + wxString('0', 31), INT_MIN, accepted},
             {eFormatBinary, eSizeDouble, "1" + wxString('0', 32), -1, accepted},
         }) {
        ExpectEntry(given);
    }
    EXPECT_EQ(Operand(eFormatBinary, eSizeDouble, -1).GetVarValueShow(), ones);
}

TEST_P(DebugVarValue, NumbersWrapAndSaturateAt32Bits)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatDecimal, eSizeDouble, "2147483647", INT_MAX, accepted},
             {eFormatDecimal, eSizeDouble, "2147483648", INT_MIN, accepted},
             {eFormatDecimal, eSizeDouble, "4294967295", -1, accepted},
             {eFormatDecimal, eSizeByte, "4294967295", -1, accepted},
             {eFormatDecimal, eSizeDouble, "4294967296", -1, accepted},
             {eFormatDecimal, eSizeDouble, "-4294967296", -1, accepted},
             {eFormatDecimal, eSizeDouble, "-4294967295", 1, accepted},
             {eFormatDecimal, eSizeByte, "-4294967295", 1, accepted},
             {eFormatDecimal, eSizeDouble, "-5", -5, accepted},
             {eFormatDecimal, eSizeDouble, "-0", 0, accepted},
             {eFormatDecimal, eSizeDouble, "99999999999999999999999", -1, accepted},
             {eFormatDecimal, eSizeDouble, "18446744073709551616", -1, accepted},
             {eFormatDecimal, eSizeBit, "4294967296", 0, "T106 0"},
             {eFormatDecimal, eSizeDouble, "99999999999999999999999x", 0, invalid},
             {eFormatDecimal, eSizeDouble, "00000000000000000000000000000012", 12, accepted},
             {eFormatHexadecimal, eSizeDouble, "100000000", -1, accepted},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, ConversionConsumesTheWholeText)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatDecimal, eSizeWord, " 5", 5, accepted},
             {eFormatDecimal, eSizeWord, "\t 5", 5, accepted},
             {eFormatDecimal, eSizeWord, "5 ", 0, invalid},
             {eFormatDecimal, eSizeWord, " ", 0, invalid},
             {eFormatDecimal, eSizeWord, "-", 0, invalid},
             {eFormatDecimal, eSizeWord, "+", 0, invalid},
             {eFormatDecimal, eSizeWord, "- 5", 0, invalid},
             {eFormatDecimal, eSizeWord, "--5", 0, invalid},
             {eFormatDecimal, eSizeWord, "0x10", 0, invalid},
             {eFormatDecimal, eSizeWord, "1.5", 0, invalid},
             {eFormatDecimal, eSizeWord, "1.000", 0, invalid},
             {eFormatBinary, eSizeWord, "", 0, accepted},
             {eFormatHexadecimal, eSizeWord, "", 0, accepted},
             {eFormatFloat, eSizeDouble, "", 0, accepted},
             {eFormatFloat, eSizeDouble, " ", 0, invalid},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, FloatingPointHasAPoint)
{
    for (const EntryCase& given : std::vector<EntryCase>{
             {eFormatFloat, eSizeDouble, "1.5", 0x3FC00000, accepted},
             {eFormatFloat, eSizeDouble, "1,5", 0, invalid},
             {eFormatFloat, eSizeDouble, "-1.5", BitsOf(-1.5F), accepted},
             {eFormatFloat, eSizeDouble, " 2e3", BitsOf(2000.0F), accepted},
             {eFormatFloat, eSizeDouble, "0x10", BitsOf(16.0F), accepted},
             {eFormatFloat, eSizeDouble, ".5", BitsOf(0.5F), accepted},
             {eFormatFloat, eSizeDouble, "0.1", BitsOf(0.1F), accepted},
             {eFormatFloat, eSizeDouble, "-0", INT_MIN, accepted},
             {eFormatFloat,
              eSizeDouble,
              "inf",
              BitsOf(std::numeric_limits<float>::infinity()),
              accepted},
             {eFormatFloat,
              eSizeDouble,
              "1e99",
              BitsOf(std::numeric_limits<float>::infinity()),
              accepted},
             {eFormatFloat,
              eSizeDouble,
              "1e999",
              BitsOf(std::numeric_limits<float>::infinity()),
              accepted},
             {eFormatFloat, eSizeDouble, "1.5x", 0, invalid},
             {eFormatFloat, eSizeDouble, "1.5 ", 0, invalid},
             {eFormatFloat, eSizeWord, "0", 0, accepted},
             {eFormatFloat, eSizeWord, "1.5", 0, "T100 32767"},
             {eFormatFloat, eSizeByte, "-1.5", 0, "T106 -128"},
         }) {
        ExpectEntry(given);
    }
}

TEST_P(DebugVarValue, NotANumberIsAccepted)
{
    PlcDebugVar var = Operand(eFormatFloat, eSizeDouble);
    wxString error;

    ASSERT_TRUE(var.SetVarValue("nan", error));

    EXPECT_EQ(var.GetVarValueShow(), "nan");
}

TEST(EnteredText, LosesTheLineEndOfAScannerOrASpreadsheet)
{
    for (const char* text : {"1500\n", "1500\r\n", "1500\r", "1500 \t\n", "1500\n \n"}) {
        EXPECT_EQ(EnteredText(text), "1500") << text;
    }
    for (const char* text : {"", "5", "5 ", " 5", "\n", " \r\n", "1\n2", "5\n "}) {
        EXPECT_EQ(EnteredText(text), text);
    }
}

TEST_P(DebugVarValue, FormatsThatDoNotExistTakeNothing)
{
    for (const int format : {4, -1, 100}) {
        for (const char* text : {"1", ""}) {
            PlcDebugVar var = Operand(eFormatDecimal, eSizeDouble, 77);
            var.format = format;
            wxString error;

            EXPECT_FALSE(var.SetVarValue(text, error)) << format;
            EXPECT_EQ(error, "T89") << format;
            EXPECT_EQ(var.value, 77) << format;
        }
    }
}

TEST_P(DebugVarValue, SizesThatDoNotExistTakeOnlyMinusOne)
{
    PlcDebugVar var = Operand(eFormatDecimal, eSizeDouble, 77);
    var.size = 4;
    wxString error;

    EXPECT_FALSE(var.SetVarValue("0", error));
    EXPECT_EQ(error, "T100 -1");
    EXPECT_FALSE(var.SetVarValue("-2", error));
    EXPECT_EQ(error, "T106 -1");
    EXPECT_EQ(var.value, 77);
    EXPECT_TRUE(var.SetVarValue("-1", error));
    EXPECT_EQ(var.value, -1);
}
