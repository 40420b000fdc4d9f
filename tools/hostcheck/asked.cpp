#include "asked.h"

#include "debug_file.h"
#include "file.h"
#include "ini.h"
#include "utf8.h"

#include <algorithm>
#include <cstring>

namespace hostcheck {

namespace {

constexpr std::size_t mostOperands = 20;
constexpr std::int32_t shownSteps = 20;

constexpr std::size_t indexPlaceAt = 8;
constexpr std::size_t recordBytes = 56;
constexpr std::size_t firstStepAt = 48;
constexpr std::size_t lineCountAt = 50;
constexpr std::size_t linesAt = 52;

/// The number of so many bytes at a place.
template <typename Number> std::optional<Number> NumberAt(std::string_view bytes, std::size_t place)
{
    if (place > bytes.size() || bytes.size() - place < sizeof(Number)) {
        return std::nullopt;
    }
    Number number = 0;
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

/// Takes the text before the next line end off the front.
std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// How many of the lines at the front of a text have a step.
std::int32_t CountSteps(std::string_view text, std::uint16_t lines)
{
    std::int32_t steps = 0;
    for (int i = 0; i < lines && !text.empty(); ++i) {
        steps += plc::IsExecutable(TakeLine(text)) ? 1 : 0;
    }
    return steps;
}

std::optional<Steps> StepsOfBlock(std::string_view debugFile, std::size_t record)
{
    const auto first = NumberAt<std::uint16_t>(debugFile, record + firstStepAt);
    const auto lines = NumberAt<std::uint16_t>(debugFile, record + lineCountAt);
    const auto place = NumberAt<std::uint32_t>(debugFile, record + linesAt);
    if (!place || *place > debugFile.size()) {
        return std::nullopt;
    }
    const std::int32_t count = std::min(CountSteps(debugFile.substr(*place), *lines), shownSteps);
    return count > 0 ? std::optional(Steps{*first, *first + count - 1}) : std::nullopt;
}

} // namespace

std::vector<std::string> OperandsOf(std::string_view listFile)
{
    const std::string text = base::Utf8Of(listFile);
    std::string_view rest = text;
    std::vector<std::string> operands;
    while (!rest.empty() && operands.size() < mostOperands) {
        const std::string_view line = TakeLine(rest);
        std::string name(line.substr(0, line.find('/')));
        name.erase(
            std::remove_if(
                name.begin(),
                name.end(),
                [](char c) { return c == ' ' || c == '\t' || c == '\r'; }),
            name.end());
        const auto operand = plc::ParseOperand(name);
        if (operand && plc::Exists(*operand)) {
            operands.push_back(name);
        }
    }
    return operands;
}

std::vector<std::string> UsualOperands()
{
    return {
        "MB0",
        "M1.0",
        "MW2",
        "MD4",
        "E0.0",
        "EB1",
        "EW2",
        "ED4",
        "MB5",
        "A0.0",
        "AB1",
        "AW2",
        "AD4",
        "DB10.DBX0.0",
        "DB10.DBB1",
        "DB10.DBW2",
        "DB10.DBD4",
        "T1",
        "Z1"};
}

std::vector<std::string> OperandsFor(const std::string& prefix)
{
    const std::string folder = prefix.substr(0, prefix.rfind('/') + 1);
    const auto configuration = base::ReadFile(folder + "plcdebug.ini");
    const auto list =
        configuration ? base::IniValue(*configuration, "Settings", "PLCLastFile") : std::nullopt;
    const auto file = list ? base::ReadFile(*list) : base::Failure{};
    std::vector<std::string> operands = file ? OperandsOf(*file) : std::vector<std::string>();
    return operands.empty() ? UsualOperands() : operands;
}

std::string Describe(const Steps& steps)
{
    return "the steps " + std::to_string(steps.first) + " to " + std::to_string(steps.last);
}

std::optional<std::vector<Steps>> StepsOf(std::string_view debugFile)
{
    const auto index = NumberAt<std::uint32_t>(debugFile, indexPlaceAt);
    const auto blocks = NumberAt<std::int32_t>(debugFile, index.value_or(0));
    if (!index || !blocks || *blocks < 1) {
        return std::nullopt;
    }
    std::vector<Steps> all;
    std::size_t record = *index + sizeof *blocks;
    for (std::int32_t i = 0; i < *blocks && record < debugFile.size(); ++i, record += recordBytes) {
        if (const auto steps = StepsOfBlock(debugFile, record)) {
            all.push_back(*steps);
        }
    }
    return all;
}

} // namespace hostcheck
