#pragma once

#include "plcdebugvar_kinds.h"

#include <wx/string.h>

#include <cstdint>
#include <optional>
#include <string>

// Values as texts and texts as values, the same in every locale and on every architecture. No
// windows. Any thread.

/// @return the text without the line end that a spreadsheet or a scanner has put behind it, and
///         without blanks and tabs before that, when something is left; else the text as it is.
wxString EnteredText(const wxString& text);

/// Converts a typed text with the number semantics of a 32-bit machine: a minus sign wraps an
/// unsigned number, one too large becomes all ones. An empty text is 0.
/// @param format eVarFormat
/// @return the raw value; nothing when the text is not wholly a number of the format.
std::optional<std::int32_t> ParseValue(const std::wstring& text, std::int32_t format);

/// @param format eVarFormat
/// @param size eVarSize
/// @return the raw value as text; "-1" for a format or size that does not exist.
wxString ValueText(std::int32_t value, std::int32_t format, std::int32_t size);

/// @param size eVarSize
/// @return the raw values that an operator may write.
ValueRange RangeOfSize(std::int32_t size);
