#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What stands on one line of a statement list. Values. Any thread.

namespace plc {

/// A piece of a line and where it begins, in bytes. Empty where there is none.
struct Word
{
    std::string_view text;
    std::size_t at = 0;
};

/// A mistake and where on the line it stands, in bytes.
struct LineError
{
    std::size_t at;
    std::string message;
};

/// "LABEL: MNEMONIC ARGUMENT // remark", each part optional.
struct SourceLine
{
    Word label; ///< Without its colon; what stands before the colon need not be a proper label.
    Word mnemonic;
    Word argument;
    bool hasLabel = false;
};

SourceLine SplitLine(std::string_view text);

/// ASCII, whatever the locale.
bool IsDigit(char c);

/// A letter or underscore, then letters, digits, underscores; ASCII only.
bool IsIdentifier(std::string_view text);

/// "OB1", "PB0" to "PB999", "FB0" to "FB999".
bool IsBlockName(std::string_view text);

/// Bytes that no line may hold: control characters (the listing would lose or split them) and what
/// is not UTF-8.
std::optional<LineError> FindBadByte(std::string_view text);

/// The column of a byte, from 1, in characters.
std::size_t ColumnOf(std::string_view text, std::size_t at);

} // namespace plc
