#include "numberedtexts.h"
#include "plcdebugvar.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

PlcDebugVar Operand(eVarFormat format, eVarSize size, std::int32_t value = 0)
{
    PlcDebugVar var;
    var.format = format;
    var.size = size;
    var.value = value;
    return var;
}

std::int32_t BitsOf(float number)
{
    std::int32_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

/// Values read and print the same whatever locale the host has set.
class DebugVarValue : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        ASSERT_NE(std::setlocale(LC_ALL, GetParam()), nullptr) << "no locale " << GetParam();
        WriteNumberedTexts(dir.Path());
        IntlLangImp().SetFilePath(wxString(dir.Path().c_str()).wc_str());
        IntlLangImp().SetLanguage(wxString(numberedLanguage).wc_str());
    }

    void TearDown() override { std::setlocale(LC_ALL, "C"); }

    TempDir dir;
};

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

// ---- Entry

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

// ---- Answers

TEST_P(DebugVarValue, AnAnswerIsSignExtendedByItsSize)
{
    struct AnswerCase
    {
        eVarSize size;
        long answer;
        std::int32_t value;
    };

    for (const AnswerCase& given : std::vector<AnswerCase>{
             {eSizeByte, 0x7F, 127},
             {eSizeByte, 0x80, -128},
             {eSizeByte, 0xFF, -1},
             {eSizeByte, 0x12345680L, -128},
             {eSizeByte, -1, -1},
             {eSizeWord, 0x7FFF, 32767},
             {eSizeWord, 0x8000, -32768},
             {eSizeWord, 0x12340005L, 5},
             {eSizeDouble, INT_MIN, INT_MIN},
             {eSizeDouble, -1, -1},
             {eSizeBit, 2, 2},
             {eSizeBit, -1, -1},
         }) {
        PlcDebugVar var = Operand(eFormatDecimal, given.size);
        var.SetVarValue(given.answer);
        EXPECT_EQ(var.value, given.value) << given.size << " " << given.answer;
    }
    PlcDebugVar anySize = Operand(eFormatDecimal, eSizeDouble);
    anySize.size = 9;
    anySize.SetVarValue(0x1FFL);
    EXPECT_EQ(anySize.value, 0x1FF);
}

// ---- Display

TEST_P(DebugVarValue, IsShownInItsFormat)
{
    struct ShowCase
    {
        eVarFormat format;
        eVarSize size;
        std::int32_t value;
        wxString shown;
    };

    const wxString sixteenOnes('1', 16);
    for (const ShowCase& given : std::vector<ShowCase>{
             {eFormatDecimal, eSizeWord, -1, "-1"},
             {eFormatDecimal, eSizeDouble, INT_MIN, "-2147483648"},
             {eFormatDecimal, eSizeDouble, 1234567, "1234567"},
             {eFormatDecimal, eSizeBit, 2, "2"},
             {eFormatHexadecimal, eSizeWord, -1, "FFFFFFFF"},
             {eFormatHexadecimal, eSizeWord, 0xAB, "00AB"},
             {eFormatHexadecimal, eSizeByte, -128, "FFFFFF80"},
             {eFormatHexadecimal, eSizeByte, 0x0A, "0A"},
             {eFormatHexadecimal, eSizeBit, 2, "02"},
             {eFormatHexadecimal, eSizeBit, 1, "01"},
             {eFormatHexadecimal, eSizeDouble, 0xBEEF, "0000BEEF"},
             {eFormatBinary, eSizeWord, -1, sixteenOnes},
             {eFormatBinary, eSizeBit, 2, "0"},
             {eFormatBinary, eSizeBit, 3, "1"},
             {eFormatBinary, eSizeByte, 0x05, "00000101"},
             {eFormatBinary, eSizeWord, 0x8001, "1000000000000001"},
             {eFormatBinary, eSizeDouble, INT_MIN, "1" + wxString('0', 31)},
             {eFormatFloat, eSizeDouble, 0x3FC00000, "1.500000"},
             {eFormatFloat, eSizeDouble, BitsOf(-0.1F), "-0.100000"},
             {eFormatFloat, eSizeDouble, BitsOf(1234567.0F), "1234567.000000"},
             {eFormatFloat, eSizeDouble, 0, "0.000000"},
             {eFormatFloat, eSizeByte, 1, "0.000000"},
             {eFormatFloat, eSizeDouble, BitsOf(-std::numeric_limits<float>::infinity()), "-inf"},
         }) {
        EXPECT_EQ(Operand(given.format, given.size, given.value).GetVarValueShow(), given.shown)
            << given.format << " " << given.size << " " << given.value;
    }
}

TEST_P(DebugVarValue, OfTheLargestFloatIsShownWhole)
{
    const std::int32_t bits = BitsOf(std::numeric_limits<float>::lowest());

    const wxString shown = Operand(eFormatFloat, eSizeDouble, bits).GetVarValueShow();

    EXPECT_EQ(shown, "-340282346638528859811704183484516925440.000000");
}

TEST_P(DebugVarValue, OfASizeOrFormatThatDoesNotExistIsShownAsMinusOne)
{
    PlcDebugVar badSize = Operand(eFormatHexadecimal, eSizeBit, 5);
    for (const int size : {4, -1}) {
        badSize.size = size;
        badSize.format = eFormatHexadecimal;
        EXPECT_EQ(badSize.GetVarValueShow(), "-1");
        badSize.format = eFormatBinary;
        EXPECT_EQ(badSize.GetVarValueShow(), "-1");
        badSize.format = eFormatDecimal;
        EXPECT_EQ(badSize.GetVarValueShow(), "5");
    }
    PlcDebugVar badFormat = Operand(eFormatDecimal, eSizeWord, 5);
    for (const int format : {4, -1}) {
        badFormat.format = format;
        EXPECT_EQ(badFormat.GetVarValueShow(), "-1");
    }
}

TEST_P(DebugVarValue, HasTheCaptionOfItsFormat)
{
    EXPECT_EQ(Operand(eFormatDecimal, eSizeByte).GetVarFormatShow(), "T30");
    EXPECT_EQ(Operand(eFormatHexadecimal, eSizeByte).GetVarFormatShow(), "T31");
    EXPECT_EQ(Operand(eFormatBinary, eSizeByte).GetVarFormatShow(), "T32");
    EXPECT_EQ(Operand(eFormatFloat, eSizeByte).GetVarFormatShow(), "T33");
    PlcDebugVar var;
    for (const int format : {4, -1}) {
        var.format = format;
        EXPECT_EQ(var.GetVarFormatShow(), "T32");
    }
}

TEST_P(DebugVarValue, HasAnEmptyCaptionWhenTheTextIsMissing)
{
    WriteNumberedTexts(dir.Path(), {}, {30});
    IntlLangImp().SetLanguage(wxString(numberedLanguage).wc_str());

    EXPECT_EQ(Operand(eFormatDecimal, eSizeByte).GetVarFormatShow(), "");
}
