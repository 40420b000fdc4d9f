#include "bridge.h"

#include "operand.h"

#include <utility>

namespace plchost {

void Bridge::Request(const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return OnRead(request);
    case PLC_CMD_WRITE_VAR:
        return OnWrite(request);
    case PLC_CMD_DELETE_VAR:
        return OnDelete(request);
    case PLC_CMD_PRG_STATE:
        return OnProgramState(request);
    default:
        m_log("a request with an unknown command word is answered by nothing");
    }
}

std::optional<plc::Cell> Bridge::Find(const std::string& operand) const
{
    const auto parsed = plc::ParseOperand(operand);
    const auto cell = parsed ? plc::Image::Find(*parsed) : std::nullopt;
    if (!cell) {
        m_log("this PLC has no operand \"" + operand + "\"; it is answered by nothing");
    }
    return cell;
}

void Bridge::OnRead(const CMD_DATA& request)
{
    const auto cell = Find(OperandOf(request));
    const std::lock_guard lock(m_mutex);
    // A key that comes again stands for another operand now.
    m_variables.erase(request.key);
    if (cell) {
        m_variables[request.key].cell = *cell;
    }
}

void Bridge::OnWrite(const CMD_DATA& request)
{
    if (const auto cell = Find(OperandOf(request))) {
        const std::lock_guard lock(m_mutex);
        m_writes.push_back({*cell, static_cast<std::uint32_t>(PlcWrittenValue(&request))});
    }
}

void Bridge::OnDelete(const CMD_DATA& request)
{
    const std::lock_guard lock(m_mutex);
    const auto variable = m_variables.find(request.key);
    if (variable == m_variables.end()) {
        return;
    }
    if (PlcArgumentOfDelete(&request) == PLC_DELETE_ARG_START) {
        variable->second.served = true;
    } else {
        m_variables.erase(variable);
    }
}

void Bridge::OnProgramState(const CMD_DATA& request)
{
    const auto range = RequestedSteps(request);
    const bool answerable = range && IsAnswerable(*range);
    if (range && !answerable) {
        m_log("a range of steps that no answer can hold is answered by nothing");
    }

    const std::lock_guard lock(m_mutex);
    m_stepsChanged = true;
    m_steps.reset();
    if (answerable) {
        m_steps.emplace(*range);
    }
}

void Bridge::Forget()
{
    const std::lock_guard lock(m_mutex);
    m_variables.clear();
    m_stepsChanged = true;
    m_steps.reset();
}

void Bridge::AfterCycle(
    plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now)
{
    const std::lock_guard lock(m_mutex);
    for (const Write& write : std::exchange(m_writes, {})) {
        image.Write(write.cell, write.value);
    }
    for (auto& [key, variable] : m_variables) {
        AnswerVariable(key, variable, image, now);
    }
    AnswerSteps(program, cycle, now);
}

void Bridge::AnswerVariable(
    std::uint16_t key, Variable& variable, const plc::Image& image, Clock::time_point now)
{
    const std::uint32_t value = image.Read(variable.cell);
    const bool again =
        variable.served && (value != variable.value || now - variable.answered >= refreshTime);
    if (!variable.due && !again) {
        return;
    }
    const CMD_DATA answer = PlcMakeReadAnswer(key, static_cast<std::int32_t>(value));
    // While the debugger is still opening nobody takes answers; they stay due.
    variable.due = !m_answers.Answer(AnswerKind::ReadVar, &answer);
    variable.value = value;
    variable.answered = now;
}

void Bridge::AnswerSteps(plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now)
{
    const auto sinceLastTurn = now - std::exchange(m_afterCycle, now);
    if (std::exchange(m_stepsChanged, false)) {
        std::optional<plc::StepRange> watched;
        if (m_steps) {
            watched = m_steps->range;
            m_steps->cycle = cycle;
        }
        program.Watch(watched);
    }
    if (!m_steps) {
        return;
    }

    Steps& steps = *m_steps;
    if (cycle == steps.cycle) {
        return;
    }
    // Now, when that is nearer to the time than the next cycle will be.
    const auto since = now - steps.answered + sinceLastTurn / 2;
    if (!steps.due && since < stateTimeApart) {
        return;
    }
    const std::vector<plc::StepState>& states = program.WatchedStates();
    if (!steps.due && since < stateRefreshTime && states == steps.states) {
        return;
    }
    const CMD_DATA answer = MakeProgramStateAnswer(steps.range, states);
    steps.due = !m_answers.Answer(AnswerKind::ProgramState, &answer);
    steps.cycle = cycle;
    steps.answered = now;
    steps.states = states;
}

} // namespace plchost
