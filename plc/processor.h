#pragma once

#include "cyclic_program.h"
#include "image.h"
#include "instructions.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// The registers of a cycle, what each instruction does to them, and the way through the program.
// PLC thread.

namespace plc {

class Processor;

/// One instruction, ready to run.
struct Code
{
    void (*run)(Processor& processor, const Code& code);
    Cell cell;
    std::uint32_t number; ///< Constant, jump target in the block's code, called block, or slot.
    std::uint32_t line;   ///< In the block, from 0.
};

using Operation = decltype(Code::run);

/// What an instruction does; null for Op::None and Op::Remark, which do nothing.
Operation OperationOf(Op op);

/// Stores the registers as the state of the watched step in slot Code::number.
void RecordResult(Processor& processor, const Code& code);
void RecordResultAndAccumulator(Processor& processor, const Code& code);

/// The code of each block; each ends with Op::BlockEnd.
using BlockCodes = std::vector<std::vector<Code>>;

/// A jump target outside its block.
constexpr std::uint32_t noTarget = UINT32_MAX;

/// What the logic of a bracket is combined with, and how.
struct Bracket
{
    bool logicResult;
    bool inLogic;
    bool isOr;
    bool negates;
};

class Processor
{
public:
    Processor(
        const BlockCodes& blocks,
        plc::Image& image,
        std::vector<StepState>& states,
        std::chrono::milliseconds limit);

    /// Works a block through, and the blocks that it calls.
    /// @return why it did not come to its end.
    std::optional<StopCause> Run(std::uint32_t block);

    /// A piece of code: where a cycle is.
    struct Place
    {
        std::uint32_t block;
        std::uint32_t index;
    };

    /// The code that runs or has run last.
    Place Here() const { return {m_next.block, m_next.index - 1}; }

    void JumpTo(std::uint32_t target);
    void Call(std::uint32_t block);
    void EndBlock();
    void Stop(StopCause cause);

    // The registers, and what they work on.
    bool logicResult = false;
    bool inLogic = false; ///< The next bit is combined with the logic result, else it replaces it.
    bool overflow = false;
    std::uint8_t openBrackets = 0;
    std::uint32_t accumulator1 = 0;
    std::uint32_t accumulator2 = 0;
    std::array<Bracket, maxOpenBrackets> brackets{};
    Image& image;
    std::vector<StepState>& states;

private:
    void CountTurn();

    const BlockCodes& m_blocks;
    const std::chrono::milliseconds m_limit;
    Place m_next{};
    const std::vector<Code>* m_code = nullptr; ///< Of the block under way.
    std::vector<Place> m_callers;
    std::optional<StopCause> m_stop;
    bool m_ended = false;
    unsigned m_turns = 0; ///< Jumps back and calls in this cycle.
    std::chrono::steady_clock::time_point m_deadline;
};

} // namespace plc
