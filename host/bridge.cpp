#include "bridge.h"

#include "operand.h"

#include <optional>
#include <utility>

namespace plchost {

namespace {

constexpr const char* byNothing = "; it is answered by nothing";

base::Result<plc::Operand> Parse(const std::string& name)
{
    if (const auto operand = plc::ParseOperand(name)) {
        return *operand;
    }
    return base::Failure{'"' + name + "\" is no operand"};
}

} // namespace

Bridge::Bridge(AnswerSink& answers, plclink::MachineLink& link, MachineLog log)
    : m_answers(answers), m_link(link), m_log(std::move(log))
{
    m_link.Join(*this);
}

Bridge::~Bridge()
{
    Forget();
    m_link.Leave(*this);
}

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
        m_log.tell("a request with an unknown command word is answered by nothing");
    }
}

void Bridge::OnRead(const CMD_DATA& request)
{
    // A key that comes again stands for another operand now.
    Release(request.key);
    const std::string name = OperandOf(request);
    const auto operand = Parse(name);
    const auto known = operand ? m_link.Check(*operand) : base::Failure{operand.Message()};
    if (!known) {
        m_log.tell(known.Message() + byNothing);
        return;
    }
    const auto added = m_variables.try_emplace(request.key, *this, request.key, name).first;
    m_link.Watch(added->second, *operand);
}

void Bridge::OnWrite(const CMD_DATA& request)
{
    const auto operand = Parse(OperandOf(request));
    if (!operand) {
        m_log.warn(operand.Message() + "; nothing is written");
        return;
    }
    m_link.Write(
        *operand,
        static_cast<std::uint32_t>(PlcWrittenValue(&request)),
        [warn = m_log.warn](const base::Result<void>& done) {
            if (!done) {
                warn(done.Message());
            }
        });
}

void Bridge::OnDelete(const CMD_DATA& request)
{
    if (PlcArgumentOfDelete(&request) != PLC_DELETE_ARG_START) {
        Release(request.key);
        return;
    }
    const auto variable = m_variables.find(request.key);
    if (variable != m_variables.end()) {
        variable->second.Serve();
    }
}

void Bridge::OnProgramState(const CMD_DATA& request)
{
    const auto range = RequestedSteps(request);
    const bool answerable = range && IsAnswerable(*range);
    if (range && !answerable) {
        m_log.tell("a range of steps that no answer can hold is answered by nothing");
    }
    m_link.WatchSteps(*this, answerable ? range : std::nullopt);
}

void Bridge::Release(std::uint16_t key)
{
    const auto variable = m_variables.find(key);
    if (variable != m_variables.end()) {
        m_link.Unwatch(variable->second);
        m_variables.erase(variable);
    }
}

void Bridge::Forget()
{
    while (!m_variables.empty()) {
        Release(m_variables.begin()->first);
    }
    m_link.WatchSteps(*this, std::nullopt);
}

bool Bridge::Variable::OnReading(const plclink::Reading& reading)
{
    if (m_answered && !m_served) {
        return false;
    }
    const CMD_DATA answer = PlcMakeReadAnswer(m_key, static_cast<std::int32_t>(reading.value));
    // While the debugger is still opening nobody takes answers.
    const bool taken = m_bridge.m_answers.Answer(AnswerKind::ReadVar, &answer);
    m_answered = m_answered || taken;
    return taken;
}

void Bridge::Variable::OnUnreadable(const std::string& reason)
{
    m_bridge.m_log.tell(m_operand + ": " + reason + byNothing);
}

bool Bridge::OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states)
{
    const CMD_DATA answer = MakeProgramStateAnswer(range, states);
    return m_answers.Answer(AnswerKind::ProgramState, &answer);
}

} // namespace plchost
