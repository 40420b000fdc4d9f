#pragma once

#include <map>
#include <set>
#include <string>

// A language whose texts say their own number, so that a test sees which text is shown where.

/// Name of the language: its file is <directory>/numbered.lng.
constexpr const char* numberedLanguage = "numbered";

/// Writes the language file. Entry n of section 48 reads "Tn", with " %d" or " %s" behind it where
/// the text takes an argument; a menu item's letter reads "..." (none).
/// @param changes entries that read otherwise.
/// @param missing entries that are left out.
void WriteNumberedTexts(
    const std::string& directory,
    const std::map<int, std::string>& changes = {},
    const std::set<int>& missing = {});
