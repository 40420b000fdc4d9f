#include "plcwatch_text.h"

#include <algorithm>

namespace plcwatch {

namespace {

using std::chrono::milliseconds;

constexpr int secondDigits = 3;
constexpr unsigned char firstPrintable = 0x20;

std::string Padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string ThreeDigits(std::int64_t number)
{
    const std::string digits = std::to_string(number);
    return std::string(secondDigits - digits.size(), '0') + digits;
}

} // namespace

std::string SecondsText(milliseconds time)
{
    constexpr auto perSecond = milliseconds::period::den;
    return std::to_string(time.count() / perSecond) + '.' + ThreeDigits(time.count() % perSecond);
}

std::string ValueLine(const std::string& time, const KnownValue& value)
{
    return time + '\t' + value.operand + '\t' + value.text;
}

std::string LinkLine(const std::string& time, const plclink::LinkState& state)
{
    return time + "\t\t\t" + StateText(state);
}

std::string ValueJson(const std::string& time, const KnownValue& value)
{
    return "{\"t\": " + time + ", \"operand\": " + Quoted(value.operand) +
           ", \"value\": " + (value.raw ? Quoted(value.text) : "null") +
           ", \"raw\": " + (value.raw ? std::to_string(*value.raw) : "null") +
           ", \"age\": " + (value.age ? SecondsText(*value.age) : "null") + '}';
}

std::string LinkJson(const std::string& time, const plclink::LinkState& state)
{
    return "{\"t\": " + time +
           ", \"link\": " + Quoted(std::string(plclink::StatusText(state.status))) +
           ", \"reason\": " + Quoted(state.reason) + '}';
}

std::string Quoted(const std::string& text)
{
    constexpr const char* hexadecimal = "0123456789abcdef";
    constexpr unsigned nibble = 4;
    std::string quoted = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted += '\\';
            quoted += character;
        } else if (byte < firstPrintable) {
            quoted += "\\u00";
            quoted += hexadecimal[byte >> nibble];
            quoted += hexadecimal[byte & ((1U << nibble) - 1)];
        } else {
            quoted += character;
        }
    }
    return quoted + '"';
}

std::string StateText(const plclink::LinkState& state)
{
    const std::string status(plclink::StatusText(state.status));
    return state.reason.empty() ? status : status + ": " + state.reason;
}

std::vector<std::string> Table(
    const std::string& machine,
    const plclink::LinkState& state,
    const std::vector<KnownValue>& values,
    std::size_t height)
{
    std::size_t operandWidth = 0;
    std::size_t valueWidth = 0;
    for (const KnownValue& value : values) {
        operandWidth = std::max(operandWidth, value.operand.size());
        valueWidth = std::max(valueWidth, value.text.size());
    }
    std::vector<std::string> lines{machine + "  " + StateText(state)};
    for (const KnownValue& value : values) {
        if (lines.size() + 1 >= height && &value != &values.back()) {
            const std::size_t shown = lines.size() - 1;
            lines.push_back("... " + std::to_string(values.size() - shown) + " more");
            break;
        }
        lines.push_back(
            Padded(value.operand, operandWidth) + "  " + Padded(value.text, valueWidth) +
            (value.age ? "  " + SecondsText(*value.age) + " s" : ""));
    }
    return lines;
}

} // namespace plcwatch
