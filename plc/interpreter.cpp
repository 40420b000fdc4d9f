#include "interpreter.h"

#include "processor.h"

#include <algorithm>
#include <string>
#include <utility>

namespace plc {

namespace {

bool Overlap(const StepRange& a, const StepRange& b)
{
    return a.first <= b.last && b.first <= a.last;
}

bool Contains(const std::optional<StepRange>& range, std::int32_t step)
{
    return range && step >= range->first && step <= range->last;
}

bool UsesAccumulator(const Line& line)
{
    if (line.op == Op::Set) {
        return line.operand.area == Area::Counter;
    }
    const auto& all = Instructions();
    return line.op == Op::LoadConstant ||
           std::any_of(all.begin(), all.end(), [&line](const Instruction& instruction) {
               return instruction.op == line.op && instruction.usesAccumulator;
           });
}

/// Turns a block's lines into code. Watched lines get a recording beside them, so that the lines
/// that nobody watches cost the same as ever.
class BlockCompiler
{
public:
    BlockCompiler(const Block& block, const std::optional<StepRange>& watched)
        : m_block(block), m_watched(watched)
    {
    }

    std::vector<Code> Compile()
    {
        for (std::size_t i = 0; i < m_block.lines.size(); ++i) {
            AddLine(static_cast<std::uint32_t>(i));
        }
        const auto end = static_cast<std::uint32_t>(m_block.lines.size());
        m_code.push_back({OperationOf(Op::BlockEnd), {}, 0, end}); // If the last line is not one.
        PlaceJumps();
        return std::move(m_code);
    }

private:
    void AddLine(std::uint32_t number)
    {
        const Line& line = m_block.lines[number];
        m_starts.push_back(static_cast<std::uint32_t>(m_code.size()));
        // These change neither logic result nor accumulator, and what follows them may not be run.
        const bool recordsFirst = TransfersControl(line.op);
        if (recordsFirst) {
            AddRecording(line, number);
        }
        if (const Operation run = OperationOf(line.op)) {
            const Cell cell = Image::Find(line.operand).value_or(Cell{});
            if (line.op >= Op::Jump && line.op <= Op::JumpIfOverflow) {
                m_jumps.push_back(m_code.size());
            }
            m_code.push_back({run, cell, line.number, number});
        }
        if (!recordsFirst) {
            AddRecording(line, number);
        }
    }

    void AddRecording(const Line& line, std::uint32_t number)
    {
        if (line.step == noStep || !Contains(m_watched, line.step)) {
            return;
        }
        const auto slot = static_cast<std::uint32_t>(line.step - m_watched->first);
        m_code.push_back(
            {UsesAccumulator(line) ? RecordResultAndAccumulator : RecordResult, {}, slot, number});
    }

    void PlaceJumps()
    {
        for (const std::size_t jump : m_jumps) {
            std::uint32_t& target = m_code[jump].number;
            target = target < m_starts.size() ? m_starts[target] : noTarget;
        }
    }

    const Block& m_block;
    const std::optional<StepRange>& m_watched;
    std::vector<std::uint32_t> m_starts; ///< Each line's place in the code.
    std::vector<std::size_t> m_jumps;    ///< Places in the code whose number is still a line.
    std::vector<Code> m_code;
};

class Interpreter : public CyclicProgram
{
public:
    Interpreter(Program program, std::chrono::milliseconds limit);
    std::optional<StopReason> RunCycle(Image& image, std::chrono::milliseconds elapsed) override;
    bool Watch(std::optional<StepRange> range) override;

    const std::vector<StepState>& WatchedStates() const override { return m_states; }

private:
    void CompileBlocks(const std::optional<StepRange>& touched);

    const Program m_program;
    const std::chrono::milliseconds m_limit;
    std::vector<StepRange> m_steps; ///< Of each block; upside down where it has none.
    BlockCodes m_codes;
    std::optional<StepRange> m_watched;
    std::vector<StepState> m_states;
};

Interpreter::Interpreter(Program program, std::chrono::milliseconds limit)
    : m_program(std::move(program)), m_limit(limit)
{
    for (const Block& block : m_program.blocks) {
        const auto steps =
            std::count_if(block.lines.begin(), block.lines.end(), [](const Line& line) {
                return line.step != noStep;
            });
        const auto last = block.firstStep + static_cast<std::int32_t>(steps) - 1;
        m_steps.push_back({block.firstStep, last});
        m_codes.push_back(BlockCompiler(block, std::nullopt).Compile());
    }
}

std::optional<StopReason> Interpreter::RunCycle(Image& image, std::chrono::milliseconds elapsed)
{
    image.AdvanceTimers(elapsed);
    Processor processor(m_codes, image, m_states, m_limit);
    const auto cause = processor.Run(static_cast<std::uint32_t>(m_program.entry));
    if (!cause) {
        return std::nullopt;
    }
    const auto [block, index] = processor.Here();
    const std::uint32_t line = m_codes[block][index].line + 1;
    return StopReason{*cause, m_program.blocks[block].name + ", line " + std::to_string(line)};
}

bool Interpreter::Watch(std::optional<StepRange> range)
{
    const std::size_t count = range ? CountSteps(*range) : 0;
    const bool fits = !range || (count > 0 && count <= maxWatchedSteps);
    if (!fits) {
        range.reset();
    }
    std::vector<StepState> states(range ? count : 0);
    for (std::size_t i = 0; i < m_states.size(); ++i) {
        const std::int32_t step = m_watched->first + static_cast<std::int32_t>(i);
        if (Contains(range, step)) {
            states[static_cast<std::size_t>(step - range->first)] = m_states[i];
        }
    }
    m_states = std::move(states);
    const auto before = std::exchange(m_watched, range);
    CompileBlocks(before);
    CompileBlocks(m_watched);
    return fits;
}

void Interpreter::CompileBlocks(const std::optional<StepRange>& touched)
{
    for (std::size_t i = 0; touched && i < m_codes.size(); ++i) {
        if (Overlap(*touched, m_steps[i])) {
            m_codes[i] = BlockCompiler(m_program.blocks[i], m_watched).Compile();
        }
    }
}

} // namespace

std::unique_ptr<CyclicProgram> MakeInterpreter(Program program, std::chrono::milliseconds limit)
{
    return std::make_unique<Interpreter>(std::move(program), limit);
}

} // namespace plc
