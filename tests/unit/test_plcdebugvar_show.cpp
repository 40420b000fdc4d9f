#include "test_plcdebugvar_value.h"

#include <climits>
#include <limits>
#include <vector>

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
