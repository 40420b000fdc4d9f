#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text in UTF-8. Any thread.

namespace base {

/// Bytes of the character at the front of @p text, 0 when there is no whole one.
std::size_t CharacterLength(std::string_view text);

/// Whether a byte belongs to the character that began before it.
bool ContinuesCharacter(char byte);

/// The text of a file, as the toolkit of the debugger takes it: UTF-16 behind its byte-order mark,
/// UTF-8 with or without one, and anything else is Latin-1.
std::string Utf8Of(std::string_view file);

} // namespace base
