#pragma once

#include "operand.h"

#include <string>
#include <vector>

/// @param name of an operand that exists.
inline plc::Operand Operand(const std::string& name)
{
    return plc::ParseOperand(name).value();
}

/// So many flag bytes, from this one on.
inline std::vector<plc::Operand> FlagBytes(int count, int first = 0)
{
    std::vector<plc::Operand> operands;
    for (int byte = first; byte < first + count; ++byte) {
        operands.push_back(Operand("MB" + std::to_string(byte)));
    }
    return operands;
}
