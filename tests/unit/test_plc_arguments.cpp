#include "arguments.h"
#include "messageof.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using plc::ParseConstant;

std::uint32_t Constant(const std::string& text)
{
    const auto bits = ParseConstant(text);
    EXPECT_TRUE(bits) << text;
    return bits ? *bits : 0;
}

std::string ConstantError(const std::string& text)
{
    return MessageOf(ParseConstant(text));
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
    for (const char* text : {"", "-", "+", "+-5", "12a", "8#17", "1e3", "--5"}) {
        EXPECT_NE(ConstantError(text), "") << text;
    }
}

} // namespace
