#include "processor.h"

namespace plc {

namespace {

/// Calls inside each other; more means that blocks call themselves.
constexpr std::size_t maxCallDepth = 64;

/// The clock is looked at once in as many turns: a cycle of few turns cannot last.
constexpr unsigned turnsPerLook = 1024;

} // namespace

Processor::Processor(
    const BlockCodes& blocks,
    plc::Image& theImage,
    std::vector<StepState>& theStates,
    std::chrono::milliseconds limit)
    : image(theImage), states(theStates), m_blocks(blocks), m_limit(limit)
{
    m_callers.reserve(maxCallDepth);
}

std::optional<StopCause> Processor::Run(std::uint32_t block)
{
    m_next = {block, 0};
    m_code = &m_blocks[block];
    while (!m_ended) {
        const Code& code = (*m_code)[m_next.index++];
        code.run(*this, code);
    }
    return m_stop;
}

void Processor::JumpTo(std::uint32_t target)
{
    if (target >= m_code->size()) {
        Stop(StopCause::JumpOutOfBounds);
        return;
    }
    if (target < m_next.index) {
        CountTurn();
    }
    if (!m_ended) {
        m_next.index = target;
    }
}

void Processor::Call(std::uint32_t block)
{
    if (block >= m_blocks.size()) {
        Stop(StopCause::JumpOutOfBounds);
        return;
    }
    if (m_callers.size() == maxCallDepth) {
        Stop(StopCause::CallsTooDeep);
        return;
    }
    CountTurn();
    if (m_ended) {
        return;
    }
    m_callers.push_back(m_next);
    m_next = {block, 0};
    m_code = &m_blocks[block];
}

void Processor::EndBlock()
{
    if (m_callers.empty()) {
        m_ended = true;
        return;
    }
    m_next = m_callers.back();
    m_callers.pop_back();
    m_code = &m_blocks[m_next.block];
}

void Processor::Stop(StopCause cause)
{
    m_stop = cause;
    m_ended = true;
}

void Processor::CountTurn()
{
    if (++m_turns % turnsPerLook != 0) {
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (m_turns == turnsPerLook) {
        m_deadline = now + m_limit;
    } else if (now >= m_deadline) {
        Stop(StopCause::CycleTooLong);
    }
}

} // namespace plc
