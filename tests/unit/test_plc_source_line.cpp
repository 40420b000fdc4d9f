#include "source_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace {

using plc::ColumnOf;
using plc::FindBadByte;
using plc::IsBlockName;
using plc::IsIdentifier;
using plc::ParseConstant;
using plc::SplitLine;

std::uint32_t Constant(const std::string& text)
{
    const auto result = ParseConstant(text);
    EXPECT_TRUE(std::holds_alternative<std::uint32_t>(result)) << text;
    const auto* bits = std::get_if<std::uint32_t>(&result);
    return bits ? *bits : 0;
}

std::string ConstantError(const std::string& text)
{
    const auto result = ParseConstant(text);
    const auto* error = std::get_if<std::string>(&result);
    return error ? *error : "";
}

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

TEST(ParseConstant, ReadsDecimalNumbersOf32Bits)
{
    EXPECT_EQ(Constant("0"), 0U);
    EXPECT_EQ(Constant("+7"), 7U);
    EXPECT_EQ(Constant("2147483647"), 0x7FFFFFFFU);
    EXPECT_EQ(Constant("-2147483648"), 0x80000000U);
    EXPECT_EQ(Constant("-1"), 0xFFFFFFFFU);
    EXPECT_EQ(ConstantError("2147483648"), "the number is not between -2147483648 and 2147483647");
}

TEST(ParseConstant, ReadsHexadecimalAndBinaryNumbers)
{
    EXPECT_EQ(Constant("16#1a2B"), 0x1A2BU);
    EXPECT_EQ(Constant("16#FFFF_FFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(Constant("2#1010_0101"), 0xA5U);
    EXPECT_EQ(ConstantError("16#100000000"), "the number does not fit 32 bits");
    EXPECT_EQ(ConstantError("16#"), "expected hexadecimal digits after 16#");
    EXPECT_EQ(ConstantError("16#-1"), "expected hexadecimal digits after 16#");
    EXPECT_EQ(ConstantError("2#102"), "expected binary digits after 2#");
}

TEST(ParseConstant, ReadsFloatingPointAsSinglePrecisionBits)
{
    EXPECT_EQ(Constant("1.5"), 0x3FC00000U);
    EXPECT_EQ(Constant("-2.0e3"), 0xC4FA0000U);
    EXPECT_EQ(Constant("0.0"), 0U);
    EXPECT_EQ(ConstantError("1.0e99"), "the number does not fit single precision");
    EXPECT_EQ(ConstantError("1.5x"), "expected a floating-point number such as 1.5 or -2.0e3");
}

TEST(ParseConstant, RefusesOtherText)
{
    for (const char* text : {"", "-", "+", "+-5", "12a", "8#17", "1e3", "--5"})
        EXPECT_NE(ConstantError(text), "") << text;
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
    for (const char* name : {"OB1", "PB0", "PB999", "FB1", "FB10"})
        EXPECT_TRUE(IsBlockName(name)) << name;
    for (const char* name : {"", "P", "PB", "OB2", "OB", "PB01", "PB1000", "DB10", "pb1", "PB1x"})
        EXPECT_FALSE(IsBlockName(name)) << name;
}

TEST(IsIdentifier, IsMadeOfLettersDigitsAndUnderscores)
{
    for (const char* name : {"M001", "_x", "end_2"})
        EXPECT_TRUE(IsIdentifier(name)) << name;
    for (const char* name : {"", "1M", "M 1", "Öl", "M-1"})
        EXPECT_FALSE(IsIdentifier(name)) << name;
}

} // namespace
