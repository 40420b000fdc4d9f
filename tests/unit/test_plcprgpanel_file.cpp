#include "debugfile.h"
#include "plcprgpanel_file.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> ReadNames(const std::string& bytes)
{
    const TempDir dir;
    const PrgFile file = OpenPrgFile(dir.Write("f", bytes));
    std::vector<std::string> names;
    for (const DBG_BAUSTEIN_ENTRY& block : ReadBlockIndex(file.get())) {
        names.emplace_back(block.name);
    }
    return names;
}

/// Reads the first block of a file.
std::vector<DB_BAUSTEIN> ReadFirstBlock(const std::string& bytes)
{
    const TempDir dir;
    const PrgFile file = OpenPrgFile(dir.Write("f", bytes));
    const std::vector<DBG_BAUSTEIN_ENTRY> blocks = ReadBlockIndex(file.get());
    return ReadBlockLines(file.get(), blocks.at(0));
}

std::vector<DB_BAUSTEIN> ReadLines(
    const std::vector<std::string>& lines,
    std::uint16_t firstStep = 0,
    const std::string& lineEnd = "\n")
{
    return ReadFirstBlock(DebugFile({{"OB1", firstStep, lines}}, lineEnd));
}

std::vector<int> Steps(const std::vector<DB_BAUSTEIN>& lines)
{
    std::vector<int> steps;
    steps.reserve(lines.size());
    for (const DB_BAUSTEIN& line : lines) {
        steps.push_back(line.step);
    }
    return steps;
}

std::vector<std::wstring> Texts(const std::vector<DB_BAUSTEIN>& lines)
{
    std::vector<std::wstring> texts;
    texts.reserve(lines.size());
    for (const DB_BAUSTEIN& line : lines) {
        texts.push_back(line.text);
    }
    return texts;
}

std::wstring FromLocalText(const std::string& text)
{
    return ::FromLocalText(text.c_str(), text.size());
}

/// Runs a test in a UTF-8 locale, whatever the environment says.
class Utf8Text : public testing::Test
{
public:
    Utf8Text() { EXPECT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    ~Utf8Text() override { std::setlocale(LC_CTYPE, m_former.c_str()); }

private:
    std::string m_former = std::setlocale(LC_CTYPE, nullptr);
};

} // namespace

TEST(FromLocalPath, IsUtf8WhereTheHostHasSetNoLocale)
{
    constexpr std::size_t pathSize = 256;
    ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");

    EXPECT_EQ(FromLocalPath("/m\xC3\xBCller/", pathSize), L"/m\u00FCller/");
    EXPECT_EQ(FromLocalPath("/m\xFCller/", pathSize), L"/m\u00FCller/") << "ISO 8859-1";
    EXPECT_EQ(FromLocalPath("/mueller/", pathSize), L"/mueller/");
    EXPECT_EQ(FromLocalPath("/m\xC3\xBCller/", 5), L"/m\u00FCl");
    EXPECT_EQ(FromLocalPath("", pathSize), L"");
}

TEST(PrgFile, IsARegularFileOnly)
{
    const TempDir dir;
    ASSERT_EQ(::mkfifo(dir.File("pipe").c_str(), S_IRUSR | S_IWUSR), 0);

    EXPECT_EQ(OpenPrgFile(dir.File("pipe")), nullptr);
    EXPECT_EQ(OpenPrgFile("/dev/zero"), nullptr);
    EXPECT_EQ(OpenPrgFile(dir.Path().string()), nullptr);
}

TEST(ReadBlockIndex, BlocksComeInTheOrderOfTheIndex)
{
    EXPECT_THAT(
        ReadNames(DebugFile({{"OB1"}, {"FB7"}, {"PB3"}})), ElementsAre("OB1", "FB7", "PB3"));
}

TEST(ReadBlockIndex, FirstStepLineCountAndPlaceAreUnsigned)
{
    const TempDir dir;
    std::string bytes = DebugFileHead(12) + LittleEndian(1) + std::string(48, 'n');
    bytes += "\xFE\xFF\xFF\xFF\xFD\xFF\xFF\xFF";
    const PrgFile file = OpenPrgFile(dir.Write("f", bytes));

    const std::vector<DBG_BAUSTEIN_ENTRY> blocks = ReadBlockIndex(file.get());

    ASSERT_EQ(blocks.size(), 1U);
    EXPECT_EQ(blocks[0].firstStep, 0xFFFE);
    EXPECT_EQ(blocks[0].lineCount, 0xFFFF);
    EXPECT_EQ(blocks[0].fileOffset, 0xFFFFFFFD);
}

TEST(ReadBlockIndex, TheFirstEightBytesDoNotMatter)
{
    std::string bytes = DebugFile({{"OB1"}});
    bytes.replace(0, 8, 8, '\xFF');

    EXPECT_THAT(ReadNames(bytes), ElementsAre("OB1"));
}

TEST(ReadBlockIndex, ANumberOfBlocksOfZeroOrLessGivesNone)
{
    EXPECT_THAT(ReadNames(DebugFile({})), IsEmpty());
    EXPECT_THAT(ReadNames(DebugFileHead(12) + LittleEndian(-1) + std::string(112, 'x')), IsEmpty());
}

TEST(ReadBlockIndex, StopsAtAShortReadWhateverTheNumberOfBlocks)
{
    std::string bytes = DebugFile({{"OB1"}, {"FB7"}});
    bytes.pop_back();
    EXPECT_THAT(ReadNames(bytes), ElementsAre("OB1"));

    const std::size_t index = bytes.size() - 111 - 4;
    bytes.replace(index, 4, LittleEndian(0x7FFFFFFF));
    EXPECT_THAT(ReadNames(bytes), ElementsAre("OB1"));
}

TEST(ReadBlockIndex, AFileTooShortForAnIndexGivesNone)
{
    EXPECT_THAT(ReadNames(""), IsEmpty());
    EXPECT_THAT(ReadNames("PLCDEBUG\x0C"), IsEmpty());
    EXPECT_THAT(ReadNames(DebugFileHead(12)), IsEmpty());
    EXPECT_THAT(ReadNames(DebugFileHead(0x7FFFFFFF) + DebugFile({{"OB1"}})), IsEmpty());
}

TEST(ReadBlockIndex, WithANegativePlaceTheIndexIsReadRightBehindIt)
{
    for (const std::int32_t place : {-1, -12, INT32_MIN}) {
        const std::string index = DebugFile({{"OB1"}}).substr(12);
        EXPECT_THAT(ReadNames(DebugFileHead(place) + index), ElementsAre("OB1")) << place;
    }
}

TEST(OpenPrgFile, AMissingFileGivesNothing)
{
    EXPECT_EQ(OpenPrgFile(TempDir().File("missing")), nullptr);
}

TEST(IsExecutable, AnInstructionIs)
{
    EXPECT_TRUE(IsExecutable(L"U E 0.0"));
    EXPECT_TRUE(IsExecutable(L"M1: U E 0.0"));
    EXPECT_TRUE(IsExecutable(L""));
    EXPECT_TRUE(IsExecutable(L":"));
}

TEST(IsExecutable, EachOfTheFourWordsMakesALineNonExecutable)
{
    for (const wchar_t* word : {L"NOP", L"BLD", L"NETWORK", L"TITLE"}) {
        EXPECT_FALSE(IsExecutable(word));
        EXPECT_FALSE(IsExecutable(std::wstring(L"xx") + word + L"xx"));
        EXPECT_FALSE(IsExecutable(std::wstring(L"0001: ") + word + L" 12"));
    }
}

TEST(IsExecutable, AWordInARemarkBehindTheColonCountsToo)
{
    EXPECT_FALSE(IsExecutable(L"0004 :U E 1.0 // SUBTITLE"));
}

TEST(IsExecutable, WhatStandsBeforeTheFirstColonDoesNotCount)
{
    EXPECT_TRUE(IsExecutable(L"NOP: U E 1.0"));
    EXPECT_TRUE(IsExecutable(L"NETWORK TITLE BLD NOP:"));
}

TEST(IsExecutable, EverythingBehindTheFirstColonCounts)
{
    EXPECT_FALSE(IsExecutable(L"a: b: NOP"));
    EXPECT_FALSE(IsExecutable(L"a: NOP: b"));
}

TEST(IsExecutable, LettersOfAnotherCaseOrAWordCutByTheColonDoNotCount)
{
    EXPECT_TRUE(IsExecutable(L"nop 0"));
    EXPECT_TRUE(IsExecutable(L"Title"));
    EXPECT_TRUE(IsExecutable(L"NO:P"));
    EXPECT_TRUE(IsExecutable(L"N OP"));
}

TEST(ReadBlockLines, StepsCountOnlyTheExecutableLines)
{
    const std::vector<DB_BAUSTEIN> lines =
        ReadLines({"a", "b", "c", "0001: NETWORK 2", "d", "e"}, 40);

    EXPECT_THAT(Steps(lines), ElementsAre(40, 41, 42, -1, 43, 44));
}

TEST(ReadBlockLines, StatesAreUnknownAndValuesNone)
{
    const std::vector<DB_BAUSTEIN> lines = ReadLines({"U E 0.0", "NOP 0"});

    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].state, L"?");
    EXPECT_EQ(lines[0].value, L"-");
    EXPECT_EQ(lines[1].state, L"-");
    EXPECT_EQ(lines[1].value, L"-");
}

TEST(ReadBlockLines, TheTextKeepsWhatStandsBeforeTheColon)
{
    EXPECT_THAT(Texts(ReadLines({"M001: U E 0.0 : x "})), ElementsAre(L"M001: U E 0.0 : x "));
}

TEST(ReadBlockLines, LineEndsOfBothKindsGiveTheSameText)
{
    EXPECT_THAT(
        Texts(ReadLines({"U E 0.0", "= A 0.0"}, 0, "\r\n")), ElementsAre(L"U E 0.0", L"= A 0.0"));
    EXPECT_THAT(
        Texts(ReadLines({"U E 0.0", "= A 0.0"}, 0, "\n")), ElementsAre(L"U E 0.0", L"= A 0.0"));
}

TEST(ReadBlockLines, ACarriageReturnInTheMiddleGoesToo)
{
    const std::vector<DB_BAUSTEIN> lines = ReadLines({"U\r E \r\r0.0", "N\rOP"});

    EXPECT_THAT(Texts(lines), ElementsAre(L"U E 0.0", L"NOP"));
    EXPECT_THAT(Steps(lines), ElementsAre(0, -1));
}

TEST(ReadBlockLines, OnlyTheLinesOfTheBlockAreRead)
{
    const TempDir dir;
    const PrgFile file =
        OpenPrgFile(dir.Write("f", DebugFile({{"a", 0, {"1", "2"}}, {"b", 2, {"3"}}})));
    const std::vector<DBG_BAUSTEIN_ENTRY> blocks = ReadBlockIndex(file.get());

    EXPECT_THAT(Texts(ReadBlockLines(file.get(), blocks[1])), ElementsAre(L"3"));
    EXPECT_THAT(Texts(ReadBlockLines(file.get(), blocks[0])), ElementsAre(L"1", L"2"));
}

TEST(ReadBlockLines, ABlockWithoutLinesGivesNone)
{
    EXPECT_THAT(ReadLines({}), IsEmpty());
}

TEST(ReadBlockLines, WhereLinesAreMissingTheLastOneRepeatsWithStepsOfItsOwn)
{
    const std::string lines = "U E 0.0\nNOP 0\n= A 0.0";
    const std::string index =
        LittleEndian(1) + std::string(48, '\0') + std::string("\x07\0\x05\0", 4);
    // The index stands in front, so that the text ends with the file.
    const std::string bytes = DebugFileHead(12) + index + LittleEndian(72) + lines;

    const std::vector<DB_BAUSTEIN> read = ReadFirstBlock(bytes);

    EXPECT_THAT(Texts(read), ElementsAre(L"U E 0.0", L"NOP 0", L"= A 0.0", L"= A 0.0", L"= A 0.0"));
    EXPECT_THAT(Steps(read), ElementsAre(7, -1, 8, 9, 10));
}

TEST(ReadBlockLines, BehindTheEndOfTheFileAllLinesAreEmptyAndExecutable)
{
    std::string bytes = DebugFile({{"OB1", 3, {"x", "y"}}});
    bytes.replace(bytes.size() - 4, 4, "\xFF\xFF\xFF\xFF");

    const std::vector<DB_BAUSTEIN> lines = ReadFirstBlock(bytes);

    EXPECT_THAT(Texts(lines), ElementsAre(L"", L""));
    EXPECT_THAT(Steps(lines), ElementsAre(3, 4));
}

TEST(ReadBlockLines, ALongLineComesInPiecesOf255BytesThatCountAsLines)
{
    const std::string longLine = std::string(255, 'a') + std::string(255, 'b') + "c";
    const std::vector<DB_BAUSTEIN> lines =
        ReadFirstBlock(DebugFile({{"OB1", 0, {longLine, "d"}, 4}}));

    EXPECT_THAT(
        Texts(lines), ElementsAre(std::wstring(255, L'a'), std::wstring(255, L'b'), L"c", L"d"));
    EXPECT_THAT(Steps(lines), ElementsAre(0, 1, 2, 3));
}

TEST(ReadBlockLines, ALineEndThatDoesNotFitAnyMoreIsALineOfItsOwn)
{
    const std::vector<DB_BAUSTEIN> lines =
        ReadFirstBlock(DebugFile({{"OB1", 0, {std::string(255, 'a'), "d"}, 3}}));

    EXPECT_THAT(Texts(lines), ElementsAre(std::wstring(255, L'a'), L"", L"d"));
}

TEST(ReadBlockLines, AZeroByteEndsTheTextOfItsLineOnly)
{
    const std::vector<DB_BAUSTEIN> lines = ReadLines({std::string("U E\0NOP", 7), "d"});

    EXPECT_THAT(Texts(lines), ElementsAre(L"U E", L"d"));
    EXPECT_THAT(Steps(lines), ElementsAre(0, 1));
}

TEST(ReadBlockLines, TheLargestBlockIsReadAndItsStepsDoNotWrap)
{
    const std::vector<DB_BAUSTEIN> lines = ReadLines(ExecutableLines(0xFFFF), 0xFFFF);

    ASSERT_EQ(lines.size(), 0xFFFFU);
    EXPECT_EQ(lines.back().text, L"U E 65534");
    EXPECT_EQ(lines.back().step, 0xFFFF + 0xFFFE);
}

TEST_F(Utf8Text, IsConvertedFromTheLocalesEncoding)
{
    EXPECT_EQ(FromLocalText("F\xC3\xB6rderband"), L"F\u00F6rderband");
    EXPECT_EQ(FromLocalText("\xF0\x9F\x98\x80"), L"\U0001F600");
}

TEST_F(Utf8Text, ThatDoesNotConvertIsTakenByteByByte)
{
    EXPECT_EQ(FromLocalText("F\xF6rderband"), L"F\u00F6rderband");
    EXPECT_EQ(FromLocalText("\xC3\xB6\xF6"), L"\u00C3\u00B6\u00F6");
}

TEST_F(Utf8Text, EndsAtItsFirstZeroByteOrWithItsField)
{
    EXPECT_EQ(::FromLocalText("abc\0def", 7), L"abc");
    EXPECT_EQ(::FromLocalText("abcdef", 3), L"abc");
    EXPECT_EQ(::FromLocalText("\xC3\xB6\xC3\xB6", 2), L"\u00F6");
}

TEST_F(Utf8Text, OfALineThatDoesNotConvertStillHasItsWordsJudged)
{
    const std::vector<DB_BAUSTEIN> lines =
        ReadLines({"0001: NETWORK 1 F\xF6rderband", "0002 F\xF6rder: U E 0.0"});

    EXPECT_THAT(Steps(lines), ElementsAre(-1, 0));
    EXPECT_THAT(
        Texts(lines),
        ElementsAre(L"0001: NETWORK 1 F\u00F6rderband", L"0002 F\u00F6rder: U E 0.0"));
}

TEST_F(Utf8Text, OfALineCutInsideACharacterStillHasItsWordsJudged)
{
    const std::string line = "NETWORK " + std::string(246, ' ') + "\xC3\xB6";

    const std::vector<DB_BAUSTEIN> lines = ReadFirstBlock(DebugFile({{"OB1", 0, {line}, 2}}));

    EXPECT_THAT(Steps(lines), ElementsAre(-1, 0));
    EXPECT_THAT(
        Texts(lines), ElementsAre(L"NETWORK " + std::wstring(246, L' ') + L"\u00C3", L"\u00B6"));
}
