#pragma once

#include <optional>
#include <string>
#include <string_view>

// INI text: "[Section]", "Key=Value". The debugger's own reader is its toolkit's; a file is the
// same to both, and a test holds them together. Any thread.

namespace base {

/// The value of a key in a section. Names are not case-sensitive; the last value counts, unless the
/// first one is marked as fixed ("!Key=").
/// @param section empty for what stands before the first one.
std::optional<std::string>
IniValue(std::string_view text, std::string_view section, std::string_view key);

/// The same text, in UTF-8, with another value for one key, which need not be there yet; every
/// other line stays as it is. A key that the text marks as fixed keeps its value.
/// @param section, key letters and digits.
std::string WithIniValue(
    std::string_view text, std::string_view section, std::string_view key, std::string_view value);

} // namespace base
