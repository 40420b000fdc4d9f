#include "player.h"

#include "record.h"

#include <algorithm>
#include <utility>

namespace plchost {

namespace {

std::set<std::string> SetOf(const std::vector<std::string>& operands)
{
    return {operands.begin(), operands.end()};
}

bool IsRelease(const CMD_DATA& request)
{
    return request.command == PLC_CMD_DELETE_VAR &&
           PlcArgumentOfDelete(&request) != PLC_DELETE_ARG_START;
}

bool IsSame(const plc::StepRange& a, const plc::StepRange& b)
{
    return a.first == b.first && a.last == b.last;
}

} // namespace

Player::Player(AnswerSink& answers, Recording recording, double speed, Log log)
    : m_answers(answers), m_recording(std::move(recording)),
      m_operands(SetOf(WatchedOperands(m_recording))), m_speed(speed), m_log(std::move(log))
{
}

void Player::Request(const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return OnRead(request);
    case PLC_CMD_WRITE_VAR:
        return m_log("a recording takes no values; nothing is written");
    case PLC_CMD_DELETE_VAR:
        if (IsRelease(request)) {
            m_variables.erase(request.key);
        }
        return;
    case PLC_CMD_PRG_STATE:
        return OnProgramState(request);
    default:
        m_log("a request with an unknown command word is answered by nothing");
    }
}

void Player::OnRead(const CMD_DATA& request)
{
    const std::string operand = OperandOf(request);
    if (m_operands.count(operand) == 0) {
        m_log("\"" + operand + "\" is not in the recording; it is answered by nothing");
    }
    m_variables[request.key] = {operand};
}

void Player::OnProgramState(const CMD_DATA& request)
{
    m_steps.reset();
    const auto range = RequestedSteps(request);
    if (range && IsAnswerable(*range)) {
        m_steps = Steps{*range};
    }
}

void Player::Forget()
{
    m_variables.clear();
    m_steps.reset();
    m_advanced.reset();
}

std::chrono::microseconds Player::Length() const
{
    return m_recording.events.empty() ? std::chrono::microseconds{0}
                                      : m_recording.events.back().time;
}

std::chrono::microseconds Player::Position() const
{
    return std::chrono::duration_cast<std::chrono::microseconds>(m_position);
}

void Player::Rewind()
{
    m_advanced.reset();
    m_position = {};
    m_next = 0;
    m_recorded.clear();
    m_recordedSteps.reset();
    m_values.clear();
    m_states.clear();
}

void Player::Advance(Clock::time_point now)
{
    const auto passed = now - std::exchange(m_advanced, now).value_or(now);
    m_position = std::min<decltype(m_position)>(m_position + passed * m_speed, Length());
    const auto& events = m_recording.events;
    for (; m_next < events.size() && events[m_next].time <= m_position; ++m_next) {
        Play(events[m_next]);
    }
    for (auto& [key, variable] : m_variables) {
        if (variable.due) {
            AnswerVariable(key, variable);
        }
    }
    if (m_steps && m_steps->due) {
        AnswerSteps();
    }
}

void Player::Play(const RecordedEvent& event)
{
    const auto record = RecordOf(event.bytes);
    // What the recorded debugger has not taken nobody has seen.
    if (!record || !event.taken) {
        return;
    }
    switch (event.kind) {
    case EventKind::Request:
        return PlayRequest(*record);
    case EventKind::ReadAnswer:
        return PlayReadAnswer(*record);
    case EventKind::ProgramStateAnswer:
        return PlayStates(*record);
    case EventKind::Listing:
        return; // no event of its own
    }
}

void Player::PlayRequest(const CMD_DATA& request)
{
    if (request.command == PLC_CMD_READ_VAR) {
        m_recorded[request.key] = OperandOf(request);
    } else if (request.command == PLC_CMD_PRG_STATE) {
        m_recordedSteps = RequestedSteps(request);
    } else if (IsRelease(request)) {
        m_recorded.erase(request.key);
    }
}

void Player::PlayReadAnswer(const CMD_DATA& answer)
{
    const auto recorded = m_recorded.find(answer.key);
    if (recorded == m_recorded.end()) {
        return; // an answer that nobody had asked for
    }
    m_values[recorded->second] = answer;
    for (auto& [key, variable] : m_variables) {
        if (variable.operand == recorded->second) {
            AnswerVariable(key, variable);
        }
    }
}

void Player::PlayStates(const CMD_DATA& answer)
{
    const plc::StepRange steps = AnsweredSteps(answer);
    if (!m_recordedSteps || !IsSame(*m_recordedSteps, steps)) {
        return; // an answer that nobody had asked for
    }
    std::int64_t step = steps.first;
    for (const plc::StepState& state : AnsweredStates(answer)) {
        m_states[step++] = state;
    }
    AnswerSteps();
}

void Player::AnswerVariable(std::uint16_t key, Variable& variable)
{
    const auto value = m_values.find(variable.operand);
    if (value == m_values.end()) {
        return;
    }
    CMD_DATA answer = value->second;
    answer.key = key;
    // While the debugger is still opening nobody takes answers; they stay due.
    variable.due = !m_answers.Answer(AnswerKind::ReadVar, &answer);
}

/// An answer covers all steps that are asked for and has no word for "unknown", so there is none
/// before each of them has been recorded.
void Player::AnswerSteps()
{
    if (!m_steps) {
        return;
    }
    std::vector<plc::StepState> states;
    const auto end = m_states.upper_bound(m_steps->range.last);
    for (auto state = m_states.lower_bound(m_steps->range.first); state != end; ++state) {
        states.push_back(state->second);
    }
    if (states.size() < plc::CountSteps(m_steps->range)) {
        return;
    }
    const CMD_DATA answer = MakeProgramStateAnswer(m_steps->range, states);
    m_steps->due = !m_answers.Answer(AnswerKind::ProgramState, &answer);
}

} // namespace plchost
