#include "plcvarpanel_file.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

// What stands in a list file: lines into operands, operands into lines.

namespace {

/// What a line says.
struct LineCase
{
    const char* line;
    eVarArea area;
    eVarSize size;
    eVarFormat format;
    const char* address;
    int dbNumber = -1;
};

void ExpectLine(const LineCase& given)
{
    SCOPED_TRACE(given.line);
    const std::optional<ListLine> parsed = ParseListLine(given.line);
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(parsed->valid);
    EXPECT_EQ(parsed->var.area, given.area);
    EXPECT_EQ(parsed->var.size, given.size);
    EXPECT_EQ(parsed->var.format, given.format);
    EXPECT_EQ(parsed->address, given.address);
    EXPECT_EQ(parsed->var.dbNumber, given.dbNumber);
}

bool IsOperandLine(const wxString& line)
{
    return ParseListLine(line).has_value();
}

bool IsInvalidOperandLine(const wxString& line)
{
    const std::optional<ListLine> parsed = ParseListLine(line);
    return parsed && !parsed->valid;
}

PlcDebugVar
Operand(eVarArea area, eVarSize size, eVarFormat format, const wxString& address, int dbNumber = -1)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.format = format;
    var.address = address;
    var.dbNumber = dbNumber;
    return var;
}

} // namespace

TEST(ListLine, GivesAreaSizeFormatAndAddress)
{
    for (const LineCase& given : std::vector<LineCase>{
             {"M10.3/B", eAreaFlag, eSizeBit, eFormatBinary, "10.3"},
             {"EW4/H", eAreaInput, eSizeWord, eFormatHexadecimal, "4"},
             {"AB0/D", eAreaOutput, eSizeByte, eFormatDecimal, "0"},
             {"MD100/G", eAreaFlag, eSizeDouble, eFormatFloat, "100"},
             {"T5/D", eAreaTimer, eSizeWord, eFormatDecimal, "5"},
             {"Z12/H", eAreaCounter, eSizeWord, eFormatHexadecimal, "12"},
             {"DB10.DBW12/D", eAreaDb, eSizeWord, eFormatDecimal, "12", 10},
             {"DB20.DBX3.1/B", eAreaDb, eSizeBit, eFormatBinary, "3.1", 20},
             {"DB100.DBD4/G", eAreaDb, eSizeDouble, eFormatFloat, "4", 100},
             {"DB64.DBB7/H", eAreaDb, eSizeByte, eFormatHexadecimal, "7", 64},
             {"DB1.DB7.2/B", eAreaDb, eSizeBit, eFormatBinary, "7.2", 1},
         }) {
        ExpectLine(given);
    }
}

TEST(ListLine, LosesEveryBlank)
{
    ExpectLine({"M 10.3 /B", eAreaFlag, eSizeBit, eFormatBinary, "10.3"});
    ExpectLine({"  D B 1 . D B W 4 / D  ", eAreaDb, eSizeWord, eFormatDecimal, "4", 1});
}

TEST(ListLine, KeepsOtherWhiteSpace)
{
    EXPECT_FALSE(IsOperandLine("\tM10.3/B"));
    EXPECT_TRUE(IsInvalidOperandLine("M10.3/B\t"));
    EXPECT_FALSE(IsOperandLine("M\t10.3/B"));
}

TEST(ListLine, IsCaseSensitive)
{
    EXPECT_FALSE(IsOperandLine("m10.3/b"));
    EXPECT_FALSE(IsOperandLine("M10.3/b"));
    EXPECT_FALSE(IsOperandLine("db1.dbw4/d"));
}

TEST(ListLine, WithoutAFormatLetterAtItsEndIsInvalid)
{
    EXPECT_TRUE(IsInvalidOperandLine("M10.3/B;x"));
    EXPECT_TRUE(IsInvalidOperandLine("DB1.DBW4/D;"));
}

TEST(ListLine, OfATimerTakesDecimalForAMissingFormatLetter)
{
    ExpectLine({"T5/B;x", eAreaTimer, eSizeWord, eFormatDecimal, "5"});
    ExpectLine({"Z5/B;x", eAreaCounter, eSizeWord, eFormatDecimal, "5"});
}

TEST(ListLine, OfATimerWithASizeLetterHasThatSize)
{
    ExpectLine({"TB5/D", eAreaTimer, eSizeByte, eFormatDecimal, "5"});
}

TEST(ListLine, HasToBeginWithTheAreaAlthoughThePatternMatchesInside)
{
    EXPECT_FALSE(IsOperandLine("xM10.3/B"));
    EXPECT_FALSE(IsOperandLine("DB1.DBW4/DT5/H"));
    EXPECT_FALSE(IsOperandLine("?M10.3/B"));
}

TEST(ListLine, IsReadWholeAlthoughThePatternMatchesInside)
{
    // The pattern finds "E4/H" behind the first address.
    ExpectLine({"M10.3E4/H", eAreaFlag, eSizeBit, eFormatHexadecimal, "10.3E4"});
    // The address ends at the first '/', the format stands at the end.
    ExpectLine({"MB1/B/H", eAreaFlag, eSizeByte, eFormatHexadecimal, "1"});
}

TEST(ListLine, OfABlockThatCannotBeWatchedIsNone)
{
    EXPECT_FALSE(IsOperandLine("DB5.DBW2/H"));
    EXPECT_FALSE(IsOperandLine("DB11.DBW2/H"));
    EXPECT_FALSE(IsOperandLine("DB101.DBW2/H"));
    EXPECT_FALSE(IsOperandLine("DB.DBW2/H"));
}

TEST(ListLine, OfEveryBlockThatCanBeWatchedIsOne)
{
    for (const DataBlock& block : varDBs) {
        const std::string line = "DB" + std::to_string(block.number) + ".DBB0/D";
        ExpectLine({line.c_str(), eAreaDb, eSizeByte, eFormatDecimal, "0", block.number});
    }
}

TEST(ListLine, WithTheBitLetterOutsideADataBlockIsNone)
{
    EXPECT_FALSE(IsOperandLine("MX10.3/B"));
    // Here the pattern matches further behind, and the letter is looked at.
    EXPECT_TRUE(IsInvalidOperandLine("MX10.3M5.3/B"));
}

TEST(ListLine, WithoutSuffixIsNone)
{
    EXPECT_FALSE(IsOperandLine("T5"));
    EXPECT_FALSE(IsOperandLine("M10.3"));
    EXPECT_FALSE(IsOperandLine("DB1.DBW4"));
}

TEST(ListLine, OfSomethingElseIsNone)
{
    for (const char* line :
         {"", " ", "/B", "M/B", "hello", "# MB5/D is a flag", "M10.8/B", "M1.2.3/B"}) {
        EXPECT_FALSE(IsOperandLine(line)) << line;
    }
}

TEST(ListLine, WithFiveDigitsIsFoundByItsLastFour)
{
    // "5" of the area letter does not stand before four digits, so nothing matches.
    EXPECT_FALSE(IsOperandLine("M12345/D"));
    EXPECT_FALSE(IsOperandLine("DB1.DBW12345/D"));
}

TEST(ListLine, LeavesAddressAndIdOfTheRecordAlone)
{
    const std::optional<ListLine> parsed = ParseListLine("MB10/H");

    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->var.address, "");
    EXPECT_EQ(parsed->var.requestId, 0);
    EXPECT_EQ(parsed->var.value, 0);
}

TEST(ListLine, OfManyLettersIsJudgedAllTheSame)
{
    EXPECT_FALSE(IsOperandLine(wxString('x', 1000000)));
    EXPECT_TRUE(IsOperandLine("M10.3/B" + wxString('x', 1000000)));
}

TEST(ListLine, WithALetterThatIsNoneIsNone)
{
    EXPECT_FALSE(IsOperandLine(wxString(static_cast<wchar_t>(0xD800)) + "hello"));
}

TEST(ListFileText, HasOneLinePerVariable)
{
    const std::vector<PlcDebugVar> vars = {
        Operand(eAreaFlag, eSizeBit, eFormatBinary, "10.3"),
        Operand(eAreaInput, eSizeWord, eFormatHexadecimal, "4"),
        Operand(eAreaTimer, eSizeWord, eFormatDecimal, "5"),
        Operand(eAreaDb, eSizeDouble, eFormatFloat, "12", 10)};

    EXPECT_EQ(ListFileText(vars), "M10.3/B\nEW4/H\nT5/D\nDB10.DBD12/G\n");
}

TEST(ListFileText, OfNoVariableIsEmpty)
{
    EXPECT_EQ(ListFileText({}), "");
}

TEST(ListFileText, EndsBeforeTheFirstVariableWithoutAName)
{
    const std::vector<PlcDebugVar> vars = {
        Operand(eAreaFlag, eSizeByte, eFormatDecimal, "1"),
        Operand(eAreaFlag, eSizeByte, eFormatDecimal, "512"),
        Operand(eAreaFlag, eSizeByte, eFormatDecimal, "2")};

    EXPECT_EQ(ListFileText(vars), "MB1/D\n");
}

TEST(ListFileText, OfAFormatThatDoesNotExistHasNoSuffix)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeByte, eFormatDecimal, "1");
    for (const int format : {4, -1}) {
        var.format = format;
        EXPECT_EQ(ListFileText({var}), "MB1\n");
    }
}

TEST(ListFileText, IsReadBackAsTheSameOperands)
{
    const std::vector<PlcDebugVar> vars = {
        Operand(eAreaOutput, eSizeBit, eFormatBinary, "0.7"),
        Operand(eAreaInput, eSizeByte, eFormatDecimal, "63"),
        Operand(eAreaFlag, eSizeWord, eFormatHexadecimal, "510"),
        Operand(eAreaFlag, eSizeDouble, eFormatFloat, "508"),
        Operand(eAreaTimer, eSizeWord, eFormatDecimal, "126"),
        Operand(eAreaCounter, eSizeWord, eFormatDecimal, "0"),
        Operand(eAreaDb, eSizeBit, eFormatBinary, "2301.7", 1),
        Operand(eAreaDb, eSizeDouble, eFormatHexadecimal, "78", 79)};
    const TempDir dir;
    ASSERT_TRUE(WriteListFile(dir.File("a.plc"), ListFileText(vars)));

    std::vector<PlcDebugVar> read;
    for (const wxString& line : ReadListFile(dir.File("a.plc")).value_or(wxArrayString())) {
        const std::optional<ListLine> parsed = ParseListLine(line);
        ASSERT_TRUE(parsed && parsed->valid) << line;
        read.push_back(parsed->var);
        read.back().address = parsed->address;
    }

    EXPECT_TRUE(read == vars);
}

TEST(ListFileText, OfEveryAreaSizeAndFormatIsReadBack)
{
    for (const VarArea& area : varAreas) {
        for (const VarSize& size : varSizes) {
            for (const VarFormat& format : varFormats) {
                if (IsTimerOrCounter(area.value) && size.value != eSizeWord) {
                    continue; // a line of theirs says no size
                }
                const char* address = size.value == eSizeBit ? "4.7" : "4";
                const int block = area.value == eAreaDb ? 10 : noDataBlock;
                const PlcDebugVar var =
                    Operand(area.value, size.value, format.value, address, block);
                const std::string line = ListFileText({var}).BeforeFirst('\n').ToStdString();
                ExpectLine({line.c_str(), area.value, size.value, format.value, address, block});
            }
        }
    }
}
