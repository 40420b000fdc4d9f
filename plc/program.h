#pragma once

#include "instructions.h"
#include "operand.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// An assembled program: every listing line of every block with its step and its instruction.
// Values. Any thread.

namespace plc {

/// Step numbers begin here: a range 0 to 0 is left to mean none.
constexpr std::int32_t firstProgramStep = 1;

/// The step of a line that has none.
constexpr std::int32_t noStep = -1;

/// One listing line.
struct Line
{
    std::string text; ///< As in the source, without its line end.
    std::int32_t step = noStep;
    Op op = Op::None;         ///< Op::None for a line without an instruction.
    Operand operand;          ///< Of an instruction that works on one.
    std::uint32_t number = 0; ///< A constant's bits; the line in the block that a jump goes to; the
                              ///< called block's place in Program::blocks. Lines count from 0.
};

struct Block
{
    std::string name;  ///< "OB1", "PB10", "FB3".
    std::string title; ///< What its TITLE line says; may be empty.
    std::int32_t firstStep = firstProgramStep;
    std::vector<Line> lines; ///< From the TITLE line to the BE line.
};

struct Program
{
    std::vector<Block> blocks; ///< In the order of the source.
    std::size_t entry = 0;     ///< The cyclic block's place in blocks.
};

} // namespace plc
