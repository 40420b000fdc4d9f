#include "source_line.h"

#include "utf8.h"

#include <algorithm>

namespace plc {

namespace {

constexpr std::string_view remarkMark = "//";
constexpr std::string_view blanks = " \t";
constexpr unsigned char deleteCharacter = 0x7F;

bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

/// The part of @p line from @p begin to @p end, without the blanks around it.
Word Trimmed(std::string_view line, std::size_t begin, std::size_t end)
{
    const std::size_t first = line.find_first_not_of(blanks, begin);
    if (first >= end) {
        return {};
    }
    const std::size_t last = line.find_last_not_of(blanks, end - 1);
    return {line.substr(first, last - first + 1), first};
}

} // namespace

SourceLine SplitLine(std::string_view text)
{
    SourceLine line;
    const std::size_t end = std::min(text.find(remarkMark), text.size());
    const std::string_view code = text.substr(0, end);
    std::size_t begin = 0;
    if (const std::size_t colon = code.find(':'); colon != std::string_view::npos) {
        line.hasLabel = true;
        line.label = Trimmed(code, 0, colon);
        begin = colon + 1;
    }
    const Word statement = Trimmed(code, begin, code.size());
    const std::size_t gap = std::min(statement.text.find_first_of(blanks), statement.text.size());
    line.mnemonic = {statement.text.substr(0, gap), statement.at};
    line.argument = Trimmed(code, statement.at + gap, statement.at + statement.text.size());
    return line;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsIdentifier(std::string_view text)
{
    return !text.empty() && IsLetter(text[0]) &&
           std::all_of(text.begin(), text.end(), [](char c) { return IsLetter(c) || IsDigit(c); });
}

bool IsBlockName(std::string_view text)
{
    if (text == "OB1") {
        return true;
    }
    constexpr std::size_t kindLength = 2;
    constexpr std::size_t mostDigits = 3;
    const std::string_view kind = text.substr(0, kindLength);
    if (kind != "PB" && kind != "FB") {
        return false;
    }
    const std::string_view number = text.substr(kindLength);
    return !number.empty() && number.size() <= mostDigits &&
           std::all_of(number.begin(), number.end(), IsDigit) &&
           (number[0] != '0' || number.size() == 1);
}

std::optional<LineError> FindBadByte(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if ((byte < ' ' && byte != '\t') || byte == deleteCharacter) {
            return LineError{at, "a control character cannot stand in a line"};
        }
        const std::size_t length = base::CharacterLength(text.substr(at));
        if (length == 0) {
            return LineError{at, "expected a character in UTF-8"};
        }
        at += length;
    }
    return std::nullopt;
}

std::size_t ColumnOf(std::string_view text, std::size_t at)
{
    const auto before = text.substr(0, at);
    return 1 + before.size() -
           static_cast<std::size_t>(
               std::count_if(before.begin(), before.end(), base::ContinuesCharacter));
}

} // namespace plc
