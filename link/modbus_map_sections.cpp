#include "modbus_map_sections.h"

#include "arguments.h"
#include "source_line.h"

#include <algorithm>
#include <charconv>

namespace plclink {

namespace {

constexpr std::string_view blanks = " \t";

} // namespace

std::string_view WithoutBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

base::Result<long> NumberIn(const std::string& text, long lowest, long highest)
{
    long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || stop != end || error != std::errc() || number < lowest ||
        number > highest) {
        return base::Failure{
            "expected a number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
            ", " + plc::Found(text)};
    }
    return number;
}

void Sections::AddLine(std::string_view line)
{
    ++m_line;
    if (const auto bad = plc::FindBadByte(line)) {
        AddFault(bad->message);
        return;
    }
    const std::string_view text = WithoutBlanks(line.substr(0, line.find(';')));
    if (text.empty()) {
        return;
    }
    if (text.front() == '[') {
        AddHeadline(text);
    } else {
        AddEntry(text);
    }
}

void Sections::AddHeadline(std::string_view text)
{
    constexpr std::string_view range = "range";
    m_place = Place::Unknown;
    if (text.find(']') != text.size() - 1) {
        AddFault("expected [device] or [range NAME], " + plc::Found(text));
        return;
    }
    const std::string_view name = WithoutBlanks(text.substr(1, text.size() - 2));
    const bool isRange =
        name.substr(0, range.size()) == range &&
        (name.size() == range.size() || blanks.find(name[range.size()]) != std::string_view::npos);
    if (isRange) {
        AddRange(WithoutBlanks(name.substr(range.size())));
    } else if (name != "device") {
        AddFault("there is no section " + plc::Quoted(name) + ", only 'device' and 'range NAME'");
    } else if (m_device) {
        AddFault("there is a section 'device' already, on line " + std::to_string(m_device->line));
    } else {
        m_place = Place::Device;
        m_device = Section{{}, m_line, {}};
    }
}

void Sections::AddRange(std::string_view name)
{
    const auto same = std::find_if(
        m_ranges.begin(), m_ranges.end(), [&](const Section& range) { return range.name == name; });
    if (name.empty()) {
        AddFault("a range needs a name: [range flags]");
    } else if (same != m_ranges.end()) {
        AddFault(
            "there is a range " + plc::Quoted(name) + " already, on line " +
            std::to_string(same->line));
    } else {
        m_place = Place::Range;
        m_ranges.push_back({std::string(name), m_line, {}});
    }
}

void Sections::AddEntry(std::string_view text)
{
    const std::size_t equals = text.find('=');
    const std::string_view key = WithoutBlanks(text.substr(0, equals));
    if (equals == std::string_view::npos || key.empty()) {
        AddFault("expected KEY = VALUE, " + plc::Found(text));
        return;
    }
    if (m_place == Place::Nowhere) {
        AddFault(plc::Quoted(key) + " stands before the first section");
    }
    if (m_place == Place::Nowhere || m_place == Place::Unknown) {
        return;
    }
    Section& section = m_place == Place::Device ? *m_device : m_ranges.back();
    const std::string_view value = WithoutBlanks(text.substr(equals + 1));
    const auto [at, isNew] =
        section.entries.insert({std::string(key), {std::string(value), m_line}});
    if (!isNew) {
        AddFault(
            "there is a value of " + plc::Quoted(key) + " already, on line " +
            std::to_string(at->second.line));
    }
}

} // namespace plclink
