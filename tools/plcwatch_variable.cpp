#include "plcwatch_variable.h"

#include "plcvarpanel_file.h"

namespace plcwatch {

namespace {

/// @return the variable of a line, or why it is refused.
base::Result<Variable> Judge(const ListLine& line)
{
    Variable variable{line.var, {}};
    variable.var.address = line.address;
    const AddressVerdict verdict = JudgeAddress(line.var, line.address);
    const auto operand = plc::ParseOperand(variable.var.GetVarName(false).utf8_string());
    if (verdict.valid && line.valid && operand) {
        variable.operand = *operand;
        return variable;
    }
    const std::string told = RefusalText(verdict).utf8_string();
    return base::Failure{told.empty() ? "no such operand" : told};
}

} // namespace

std::string NameOf(const Variable& variable)
{
    return variable.var.GetVarName(true).utf8_string();
}

ShownValue Show(const Variable& variable, std::uint32_t value)
{
    PlcDebugVar var = variable.var;
    var.SetVarValue(static_cast<std::int32_t>(value));
    return {var.GetVarValueShow().utf8_string(), var.value};
}

base::Result<Variable> ParseVariable(const std::string& name, const std::string& format)
{
    const auto line = ParseListLine(wxString::FromUTF8(name + '/' + format));
    auto judged = line ? Judge(*line) : base::Failure{"no such operand"};
    if (!judged) {
        return base::Failure{'"' + name + "\": " + judged.Message()};
    }
    return judged;
}

base::Result<VariableList> ReadList(const std::string& file)
{
    const auto lines = ReadListFile(wxString::FromUTF8(file));
    if (!lines) {
        return base::Failure{"cannot read the variable list \"" + file + '"'};
    }
    VariableList list;
    for (const wxString& text : *lines) {
        const auto line = ParseListLine(text);
        if (!line) {
            continue;
        }
        if (auto judged = Judge(*line)) {
            list.variables.push_back(*std::move(judged));
        } else {
            list.remarks.push_back(
                file + ": \"" + text.utf8_string() + "\" is skipped: " + judged.Message());
        }
    }
    if (list.variables.empty()) {
        return base::Failure{"the variable list \"" + file + "\" holds no operand"};
    }
    return list;
}

} // namespace plcwatch
