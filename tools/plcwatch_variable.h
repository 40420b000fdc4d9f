#pragma once

#include "operand.h"
#include "plcdebugvar.h"
#include "result.h"

#include <cstdint>
#include <string>
#include <vector>

// What plcwatch watches, named and shown as the debugger's watch page does. The thread of main().

namespace plcwatch {

/// One line of a variable list.
struct Variable
{
    PlcDebugVar var;
    plc::Operand operand;
};

/// As the watch page names it: "MW 20".
std::string NameOf(const Variable& variable);

/// A raw value as the list's format shows it.
struct ShownValue
{
    std::string text;
    std::int32_t raw; ///< Of a byte or word its low bits, sign-extended.
};

ShownValue Show(const Variable& variable, std::uint32_t value);

/// @param name without blanks: "MW20".
/// @param format the letter of a list file: "D", "H", "B", "G".
/// @return the variable, or what is wrong with it.
base::Result<Variable> ParseVariable(const std::string& name, const std::string& format);

struct VariableList
{
    std::vector<Variable> variables;
    std::vector<std::string> remarks; ///< A sentence for each line whose operand is refused.
};

/// Lines that are no operand lines are skipped, as by the debugger.
/// @return the list, or why there is none: the file cannot be read or holds no operand.
base::Result<VariableList> ReadList(const std::string& file);

} // namespace plcwatch
