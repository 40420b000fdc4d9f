#include "source_line.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using plc::ColumnOf;
using plc::FindBadByte;
using plc::IsBlockName;
using plc::IsIdentifier;
using plc::SplitLine;

TEST(SplitLine, FindsLabelMnemonicAndArgument)
{
    const auto line = SplitLine("M001:  U   DB10.DBX 4.0 \t// valve: open");

    EXPECT_TRUE(line.hasLabel);
    EXPECT_EQ(line.label.text, "M001");
    EXPECT_EQ(line.mnemonic.text, "U");
    EXPECT_EQ(line.argument.text, "DB10.DBX 4.0");
    EXPECT_EQ(line.mnemonic.at, 7U);
    EXPECT_EQ(line.argument.at, 11U);
}

TEST(SplitLine, EveryPartMayBeMissing)
{
    EXPECT_TRUE(SplitLine("").mnemonic.text.empty());
    EXPECT_TRUE(SplitLine(" \t ").mnemonic.text.empty());
    EXPECT_TRUE(SplitLine("// U E0.0").mnemonic.text.empty());
    EXPECT_EQ(SplitLine("BE").mnemonic.text, "BE");
    EXPECT_TRUE(SplitLine("BE").argument.text.empty());
    EXPECT_TRUE(SplitLine("END:").mnemonic.text.empty());
    EXPECT_TRUE(SplitLine("END: // remark").hasLabel);
    EXPECT_EQ(SplitLine("END:BE").mnemonic.text, "BE");
}

TEST(SplitLine, AColonInARemarkMakesNoLabel)
{
    const auto line = SplitLine("  U E0.0 // start: button");

    EXPECT_FALSE(line.hasLabel);
    EXPECT_EQ(line.argument.text, "E0.0");
}

TEST(SplitLine, OnlyTheFirstColonEndsTheLabel)
{
    const auto line = SplitLine("PB1: TITLE Belt: start");

    EXPECT_EQ(line.label.text, "PB1");
    EXPECT_EQ(line.argument.text, "Belt: start");
}

TEST(FindBadByte, TextInUtf8WithTabsIsFine)
{
    EXPECT_FALSE(FindBadByte("U E0.0\t// Füllventil € 𝄞"));
}

TEST(FindBadByte, ControlCharactersAreFoundWhereverTheyStand)
{
    using namespace std::string_view_literals;

    EXPECT_EQ(FindBadByte("// a\0b"sv)->at, 4U);
    EXPECT_EQ(FindBadByte("a\rb")->at, 1U);
    EXPECT_EQ(FindBadByte("\x7F")->at, 0U);
}

TEST(FindBadByte, WhatIsNotUtf8IsFound)
{
    EXPECT_EQ(FindBadByte("F\xFCll")->at, 1U) << "ISO 8859-1";
    EXPECT_EQ(FindBadByte("ab\xC3")->at, 2U) << "cut short";
    EXPECT_EQ(FindBadByte("\xC0\xAF")->at, 0U) << "longer than needed";
    EXPECT_EQ(FindBadByte("\xED\xA0\x80")->at, 0U) << "surrogate";
    EXPECT_EQ(FindBadByte("\xF5\x80\x80\x80")->at, 0U) << "beyond the last character";
    EXPECT_EQ(FindBadByte("\x80")->at, 0U) << "no beginning";
}

TEST(ColumnOf, CountsCharactersFromOne)
{
    EXPECT_EQ(ColumnOf("abc", 0), 1U);
    EXPECT_EQ(ColumnOf("äöü: U", 8), 6U);
}

TEST(IsBlockName, KnowsTheThreeKinds)
{
    for (const char* name : {"OB1", "PB0", "PB999", "FB1", "FB10"}) {
        EXPECT_TRUE(IsBlockName(name)) << name;
    }
    for (const char* name : {"", "P", "PB", "OB2", "OB", "PB01", "PB1000", "DB10", "pb1", "PB1x"}) {
        EXPECT_FALSE(IsBlockName(name)) << name;
    }
}

TEST(IsIdentifier, IsMadeOfLettersDigitsAndUnderscores)
{
    for (const char* name : {"M001", "_x", "end_2"}) {
        EXPECT_TRUE(IsIdentifier(name)) << name;
    }
    for (const char* name : {"", "1M", "M 1", "Öl", "M-1"}) {
        EXPECT_FALSE(IsIdentifier(name)) << name;
    }
}

} // namespace
