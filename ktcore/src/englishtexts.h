#pragma once

#include <string_view>

/// The English language file as it was when the library was built: INI text in UTF-8.
extern const std::string_view englishTexts;
