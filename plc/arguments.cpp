#include "arguments.h"

#include "instructions.h"
#include "source_line.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>
#include <utility>

namespace plc {

namespace {

unsigned KindOf(const Operand& operand)
{
    if (operand.area == Area::Timer) {
        return takesTimer;
    }
    if (operand.area == Area::Counter) {
        return takesCounter;
    }
    return operand.width == Width::Bit ? takesBit : takesNumber;
}

/// Why an operand does not exist.
std::string Missing(const Operand& operand)
{
    const std::string name = OperandName(operand);
    const std::uint32_t size = AreaSize(operand.area, operand.block);
    if (size == 0) {
        return name + " does not exist: there is no data block " + std::to_string(operand.block);
    }
    const bool isNumbered = operand.area == Area::Timer || operand.area == Area::Counter;
    return name + " does not exist: the last " + (isNumbered ? "number" : "byte") +
           " of this area is " + std::to_string(size - 1);
}

std::string WithoutBlanks(std::string_view text)
{
    std::string result(text);
    result.erase(
        std::remove_if(result.begin(), result.end(), [](char c) { return c == ' ' || c == '\t'; }),
        result.end());
    return result;
}

/// Digits of @p base, all of @p text.
base::Result<std::uint32_t> ParseBits(std::string text, int base)
{
    text.erase(std::remove(text.begin(), text.end(), '_'), text.end());
    std::uint32_t bits = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, bits, base);
    if (error == std::errc::result_out_of_range) {
        return base::Failure{"the number does not fit 32 bits"};
    }
    if (error != std::errc() || stop != end) {
        return base::Failure{
            base == 2 ? "expected binary digits after 2#"
                      : "expected hexadecimal digits after 16#"};
    }
    return bits;
}

base::Result<std::uint32_t> ParseFloat(const std::string& text)
{
    float number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::result_out_of_range) {
        return base::Failure{"the number does not fit single precision"};
    }
    if (error != std::errc() || stop != end) {
        return base::Failure{"expected a floating-point number such as 1.5 or -2.0e3"};
    }
    static_assert(sizeof(number) == sizeof(std::uint32_t));
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof(bits));
    return bits;
}

base::Result<std::uint32_t> ParseDecimal(const std::string& text)
{
    std::int32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::result_out_of_range) {
        return base::Failure{
            "the number is not between " +
            std::to_string(std::numeric_limits<std::int32_t>::min()) + " and " +
            std::to_string(std::numeric_limits<std::int32_t>::max())};
    }
    if (error != std::errc() || stop != end) {
        return base::Failure{"expected a number such as 100, -5, 16#1F, 2#1010 or 1.5"};
    }
    return static_cast<std::uint32_t>(number);
}

} // namespace

base::Result<std::uint32_t> ParseConstant(const std::string& text)
{
    constexpr std::string_view hexadecimal = "16#";
    constexpr std::string_view binary = "2#";
    if (text.compare(0, hexadecimal.size(), hexadecimal) == 0) {
        return ParseBits(text.substr(hexadecimal.size()), 16);
    }
    if (text.compare(0, binary.size(), binary) == 0) {
        return ParseBits(text.substr(binary.size()), 2);
    }
    // The standard conversions know no plus sign.
    const bool hasPlus = text.size() > 1 && text[0] == '+' && IsDigit(text[1]);
    const std::string number = hasPlus ? text.substr(1) : text;
    return number.find('.') == std::string::npos ? ParseDecimal(number) : ParseFloat(number);
}

std::string Quoted(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

std::string Found(std::string_view text)
{
    return text.empty() ? "found the end of the line" : "found " + Quoted(text);
}

std::string ExpectedArguments(unsigned arguments)
{
    constexpr std::pair<unsigned, std::string_view> kinds[] = {
        {takesBit, "a bit such as M10.0 or DB10.DBX4.0"},
        {takesNumber, "a byte, word or double word such as MB4, EW2 or DB10.DBD4"},
        {takesTimer, "a timer such as T5"},
        {takesCounter, "a counter such as Z12"},
        {takesConstant, "a constant such as 100, 16#1F, 2#1010 or 1.5"},
        {takesLabel, "a label of this block"},
        {takesBlock, "a block such as PB10 or FB3"}};
    std::string text;
    for (const auto& [kind, words] : kinds) {
        if ((arguments & kind) == 0) {
            continue;
        }
        if (!text.empty()) {
            text += ", or ";
        }
        text += words;
    }
    return text;
}

base::Result<Argument> ReadArgument(unsigned arguments, std::string_view text)
{
    const std::string joined = WithoutBlanks(text);
    if ((arguments & takesConstant) != 0 && joined.find_first_of("+-0123456789") == 0) {
        const auto constant = ParseConstant(joined);
        if (!constant) {
            return base::Failure{constant.Message() + ", " + Found(text)};
        }
        return Argument(*constant);
    }
    const auto operand = ParseOperand(joined);
    if (!operand || (arguments & KindOf(*operand)) == 0) {
        return base::Failure{"expected " + ExpectedArguments(arguments) + ", " + Found(text)};
    }
    if (!Exists(*operand)) {
        return base::Failure{Missing(*operand)};
    }
    return Argument(*operand);
}

} // namespace plc
