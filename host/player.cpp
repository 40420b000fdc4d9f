#include "player.h"

#include "machine_link.h"
#include "record.h"

#include <algorithm>
#include <utility>

namespace plchost {

namespace {

std::vector<plc::Operand> RecordedOperands(const Recording& recording)
{
    std::vector<plc::Operand> operands;
    for (const std::string& name : WatchedOperands(recording)) {
        if (const auto operand = plc::ParseOperand(name)) {
            operands.push_back(*operand);
        }
    }
    return operands;
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

Player::Player(Recording recording, double speed)
    : m_recording(std::move(recording)), m_operands(RecordedOperands(m_recording)), m_speed(speed),
      m_readings(m_operands.size())
{
}

void Player::Start(plclink::SourceEvents& events)
{
    m_events = &events;
    m_events->OnState({plclink::LinkStatus::Running});
}

std::optional<std::size_t> Player::Find(const plc::Operand& operand) const
{
    const auto found = std::find(m_operands.begin(), m_operands.end(), operand);
    if (found == m_operands.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - m_operands.begin());
}

base::Result<void> Player::Check(const plc::Operand& operand) const
{
    if (!Find(operand)) {
        return base::Failure{'"' + plc::OperandName(operand) + "\" is not in the recording"};
    }
    return {};
}

void Player::Watch(std::shared_ptr<const plclink::WatchList> list)
{
    std::vector<Watched> watched;
    for (const plc::Operand& operand : *list) {
        const std::size_t recorded = Find(operand).value();
        const auto before =
            std::find_if(m_watched.begin(), m_watched.end(), [recorded](const Watched& candidate) {
                return candidate.operand == recorded;
            });
        watched.push_back(before == m_watched.end() ? Watched{recorded, true} : *before);
    }
    m_watched = std::move(watched);
    m_list = std::move(list);
}

void Player::Write(const plc::Operand&, std::uint32_t, plclink::WriteDone done)
{
    done(base::Failure{"a recording takes no values; nothing is written"});
}

void Player::WatchSteps(std::optional<plc::StepRange> range)
{
    m_steps.reset();
    if (range) {
        m_steps = Steps{*range};
    }
}

std::chrono::milliseconds Player::TurnTime() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(plclink::refreshTime / m_speed);
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
    m_readings.assign(m_operands.size(), std::nullopt);
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
    for (std::size_t place = 0; place < m_watched.size(); ++place) {
        if (m_watched[place].due) {
            TellValue(place);
        }
    }
    m_events->OnReadings({}, {}); // what could not be delivered before
    if (m_steps && m_steps->due) {
        TellSteps();
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
        const auto operand = plc::ParseOperand(OperandOf(request));
        m_recorded[request.key] = operand ? Find(*operand) : std::nullopt;
    } else if (request.command == PLC_CMD_PRG_STATE) {
        m_recordedSteps = RequestedSteps(request);
    } else if (IsRelease(request)) {
        m_recorded.erase(request.key);
    }
}

void Player::PlayReadAnswer(const CMD_DATA& answer)
{
    const auto recorded = m_recorded.find(answer.key);
    if (recorded == m_recorded.end() || !recorded->second) {
        return; // an answer that nobody had asked for
    }
    const std::size_t operand = *recorded->second;
    m_readings[operand] = {static_cast<std::uint32_t>(PlcAnsweredValue(&answer)), *m_advanced};
    for (std::size_t place = 0; place < m_watched.size(); ++place) {
        if (m_watched[place].operand == operand) {
            TellValue(place);
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
    TellSteps();
}

void Player::TellValue(std::size_t place)
{
    Watched& watched = m_watched[place];
    if (const auto& reading = m_readings[watched.operand]) {
        watched.due = false;
        m_events->OnReadings(*m_list, {{place, *reading}});
    }
}

/// States cover all steps that are asked for and have no word for "unknown", so there are none
/// before each of them has been recorded.
void Player::TellSteps()
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
    m_steps->due = !m_events->OnSteps(m_steps->range, states);
}

} // namespace plchost
