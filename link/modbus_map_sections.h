#pragma once

#include "modbus_map.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The lines of a Modbus map, whatever their keys and values mean. Any thread.

namespace plclink {

/// The text without the blanks around it.
std::string_view WithoutBlanks(std::string_view text);

struct Entry
{
    std::string value;
    std::size_t line = 0;
};

/// Reads a number without sign.
base::Result<long> NumberIn(const std::string& text, long lowest, long highest);

/// What stands below a headline: values by key.
struct Section
{
    std::string name; ///< Of a range; empty for the device.
    std::size_t line = 0;
    std::map<std::string, Entry, std::less<>> entries;
};

/// Takes a map apart, line by line, whatever its keys and values mean. base::IniValue() looks for
/// one key as the debugger's toolkit does; here every line counts, with its number, and a semicolon
/// begins a comment anywhere.
class Sections
{
public:
    explicit Sections(std::vector<MapFault>& faults) : m_faults(faults) {}

    /// @param line without its end.
    void AddLine(std::string_view line);

    const std::optional<Section>& Device() const { return m_device; }

    const std::vector<Section>& Ranges() const { return m_ranges; }

private:
    enum class Place
    {
        Nowhere,
        Device,
        Range,
        Unknown ///< What follows an unknown headline is not looked at.
    };

    void AddFault(std::string reason) { m_faults.push_back({m_line, std::move(reason)}); }

    void AddHeadline(std::string_view text);
    void AddRange(std::string_view name);
    void AddEntry(std::string_view text);

    std::vector<MapFault>& m_faults;
    std::size_t m_line = 0;
    Place m_place = Place::Nowhere;
    std::optional<Section> m_device;
    std::vector<Section> m_ranges;
};

} // namespace plclink
