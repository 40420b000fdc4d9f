#include "ini.h"

#include "utf8.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace base {

namespace {

constexpr std::string_view lineEnds = "\r\n"; // one of them, or both in this order
constexpr std::string_view blanks = " \t\v\f";
constexpr char escapeMark = '\\';
constexpr char quote = '"';
constexpr char fixedMark = '!';

/// What stands for a character that a value cannot hold as it is.
struct Escape
{
    char letter;
    char character;
};

constexpr Escape escapes[] = {
    {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {escapeMark, escapeMark}, {quote, quote}};

std::string_view WithoutBlanksBefore(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view WithoutBlanksBehind(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool IsSameName(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [lower](char x, char y) {
        return lower(x) == lower(y);
    });
}

/// Where a character stands that is not escaped; npos when nowhere.
std::size_t FindPlain(std::string_view text, char character)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == escapeMark) {
            ++i;
        } else if (text[i] == character) {
            return i;
        }
    }
    return std::string_view::npos;
}

/// In a name, an escaped character stands for itself.
std::string NameOf(std::string_view text)
{
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == escapeMark && ++i == text.size()) {
            break;
        }
        name += text[i];
    }
    return name;
}

/// Quotes keep the blanks of a value; what is escaped as nothing known is left out.
std::string ValueOf(std::string_view text)
{
    const bool isQuoted = text.substr(0, 1) == std::string_view(&quote, 1);
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == escapeMark) {
            ++i;
            for (const Escape& escape : escapes) {
                if (i < text.size() && text[i] == escape.letter) {
                    value += escape.character;
                }
            }
        } else if (text[i] != quote || !isQuoted) {
            value += text[i];
        }
    }
    return value;
}

std::string Escaped(std::string_view value)
{
    std::string text;
    for (const char c : value) {
        const auto* const escape =
            std::find_if(std::begin(escapes), std::end(escapes), [c](const Escape& known) {
                return known.character == c;
            });
        if (escape != std::end(escapes)) {
            text += escapeMark;
            text += escape->letter;
        } else {
            text += c;
        }
    }
    const bool hasOuterBlank =
        WithoutBlanksBefore(value) != value || WithoutBlanksBehind(value) != value;
    return hasOuterBlank ? quote + text + quote : text;
}

/// A line of a text, as one looks for a key in a section.
struct Line
{
    std::string_view text;   ///< With its line end.
    bool isHeadline = false; ///< Of the section.
    bool isFixed = false;
    std::optional<std::string> value{}; ///< That it gives the key.
};

/// @return the line at the front of @p text, with its line end, which it takes off.
std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find_first_of(lineEnds), text.size());
    const std::size_t ends = text.substr(end, lineEnds.size()) == lineEnds ? lineEnds.size() : 1;
    const std::string_view line = text.substr(0, end + ends);
    text.remove_prefix(line.size());
    return line;
}

/// "Key=Value", or "!Key=Value", which fixes the value.
struct Entry
{
    std::string key;
    bool isFixed;
    std::string value;
};

std::optional<Entry> EntryIn(std::string_view content)
{
    const std::size_t equals = FindPlain(content, '=');
    if (equals == std::string_view::npos || content.find_first_of("[;#") == 0) {
        return std::nullopt;
    }
    const std::string name = NameOf(WithoutBlanksBehind(content.substr(0, equals)));
    const bool isFixed = !name.empty() && name.front() == fixedMark;
    return Entry{
        name.substr(isFixed ? 1 : 0),
        isFixed,
        ValueOf(WithoutBlanksBefore(content.substr(equals + 1)))};
}

/// @return the name in "[Section]", whatever stands behind it.
std::optional<std::string> SectionIn(std::string_view content)
{
    const std::size_t end = FindPlain(content, ']');
    if (end == std::string_view::npos || content.front() != '[') {
        return std::nullopt;
    }
    return NameOf(content.substr(1, end - 1));
}

std::vector<Line> LinesOf(std::string_view text, std::string_view section, std::string_view key)
{
    std::vector<Line> lines;
    bool isInside = section.empty();
    std::optional<bool> isFixed; // once the key has a value
    while (!text.empty()) {
        Line line{TakeLine(text)};
        const std::string_view content = WithoutBlanksBefore(
            line.text.substr(0, std::min(line.text.find_first_of(lineEnds), line.text.size())));
        if (const auto name = SectionIn(content)) {
            isInside = IsSameName(*name, section);
            line.isHeadline = isInside;
        }
        const auto entry = isInside ? EntryIn(content) : std::nullopt;
        // A fixed value is the last one, and only the first one can be fixed.
        const bool counts =
            entry && IsSameName(entry->key, key) && (!isFixed || (!*isFixed && !entry->isFixed));
        if (counts) {
            isFixed = entry->isFixed;
            line.isFixed = entry->isFixed;
            line.value = entry->value;
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace

std::optional<std::string>
IniValue(std::string_view text, std::string_view section, std::string_view key)
{
    const std::string utf8 = Utf8Of(text);
    std::optional<std::string> value;
    for (Line& line : LinesOf(utf8, section, key)) {
        if (line.value) {
            value = std::move(line.value);
        }
    }
    return value;
}

std::string WithIniValue(
    std::string_view text, std::string_view section, std::string_view key, std::string_view value)
{
    std::string utf8 = Utf8Of(text);
    const std::vector<Line> lines = LinesOf(utf8, section, key);
    const auto has = [&lines](auto what) { return std::any_of(lines.begin(), lines.end(), what); };
    if (has([](const Line& line) { return line.isFixed; })) {
        return utf8;
    }
    const std::string fresh = std::string(key) + '=' + Escaped(value) + '\n';
    bool isSet = has([](const Line& line) { return line.value.has_value(); });
    std::string result;
    const auto add = [&](const std::string& what) {
        const bool isOpen = !result.empty() && lineEnds.find(result.back()) == std::string::npos;
        result += isOpen ? '\n' + what : what;
        isSet = true;
    };
    for (const Line& line : lines) {
        result += line.value ? std::string_view(fresh) : line.text;
        if (line.isHeadline && !isSet) {
            add(fresh);
        }
    }
    if (!isSet) {
        add('[' + std::string(section) + "]\n" + fresh);
    }
    return result;
}

} // namespace base
