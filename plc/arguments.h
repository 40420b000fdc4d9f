#pragma once

#include "operand.h"
#include "result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

// What stands behind a mnemonic: operands and constants. Any thread.

namespace plc {

/// Reads a constant: "100", "-5", "16#1A2B", "2#1010_0101", "1.5e3"; floating point gives its
/// single-precision bits.
/// @return the 32 bits, or what is wrong with it.
base::Result<std::uint32_t> ParseConstant(const std::string& text);

/// An operand, which exists, or the bits of a constant.
using Argument = std::variant<Operand, std::uint32_t>;

/// Reads an operand or a constant; blanks in it do not count.
/// @param arguments what the instruction takes, an ArgumentSet.
base::Result<Argument> ReadArgument(unsigned arguments, std::string_view text);

/// "a timer such as T5, or a constant such as 100"
std::string ExpectedArguments(unsigned arguments);

/// "found 'X'", or that there is nothing.
std::string Found(std::string_view text);

/// "'X'"
std::string Quoted(std::string_view text);

} // namespace plc
