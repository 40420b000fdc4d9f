#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// The statement list's instructions: the one table that assembler, interpreter and tests share.
// Any thread.

namespace plc {

enum class Op : std::uint8_t
{
    None, ///< A line without an instruction.
    And,
    AndNot,
    Or,
    OrNot,
    AndOpen,
    AndNotOpen,
    OrOpen,
    OrNotOpen,
    Close,
    Assign,
    Set,
    Reset,
    RisingEdge,
    FallingEdge,
    Load,
    Transfer,
    Swap,
    Extend,
    Add16,
    Subtract16,
    Multiply16,
    Divide16,
    Add32,
    Subtract32,
    Multiply32,
    Divide32,
    Equal16,
    Unequal16,
    Greater16,
    GreaterEqual16,
    Less16,
    LessEqual16,
    Equal32,
    Unequal32,
    Greater32,
    GreaterEqual32,
    Less32,
    LessEqual32,
    PulseTimer,
    OnDelayTimer,
    OffDelayTimer,
    CountUp,
    CountDown,
    Jump,
    JumpIf,
    JumpIfNot,
    JumpIfOverflow,
    Call,
    CallIf,
    EndIf,
    EndAlways,
    BlockEnd,
    Remark,       ///< NOP, BLD, NETWORK and TITLE: text for the reader, nothing is done.
    LoadConstant, ///< What Load becomes with a constant; has no mnemonic of its own.
};

/// Kinds of arguments, to be combined into the set that an instruction takes.
enum ArgumentSet : std::uint8_t
{
    takesNothing = 0,
    takesBit = 1,
    takesNumber = 2, ///< A byte, word or double word.
    takesTimer = 4,
    takesCounter = 8,
    takesConstant = 16,
    takesLabel = 32,
    takesBlock = 64,
    takesText = 128
};

struct Instruction
{
    std::string_view mnemonic;
    Op op;
    unsigned arguments;   ///< ArgumentSet
    bool usesAccumulator; ///< Reads or changes accumulator 1: the listing shows its value.
};

/// As many brackets may be open inside each other.
constexpr std::size_t maxOpenBrackets = 8;

/// All instructions, in the order of the language's description.
const std::vector<Instruction>& Instructions();

/// @return null when there is none of this name.
const Instruction* FindInstruction(std::string_view mnemonic);

/// Whether a line of this instruction is a place where the order of lines is left: a jump, a call
/// or a block's end, taken or not.
bool TransfersControl(Op op);

} // namespace plc
