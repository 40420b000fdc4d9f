#include "fault_injector.h"

#include <algorithm>
#include <limits>

namespace plchost {

namespace {

/// The same answer for a variable, or for steps, that nobody watches.
CMD_DATA ForNobody(AnswerKind kind, const CMD_DATA& answer)
{
    CMD_DATA foreign = answer;
    if (kind == AnswerKind::ReadVar) {
        // Keys are counted up from 0, so the upper half is unused for a long time.
        foreign.key = static_cast<std::uint16_t>(~answer.key);
        return foreign;
    }
    PlcPutSteps(&foreign, PlcFirstStep(&answer) + 1, PlcLastStep(&answer) + 1);
    return foreign;
}

} // namespace

const std::array<NamedFault, 6>& NamedFaults()
{
    static const std::array<NamedFault, 6> faults{{
        {"late-answer", Fault::LateAnswer, "every answer comes 200 cycles late"},
        {"wrong-key", Fault::WrongKey, "an answer that nobody asked for precedes every answer"},
        {"length-65535", Fault::Length65535, "every answer claims to be 65535 bytes long"},
        {"null-answer", Fault::NullAnswer, "a null pointer precedes every answer"},
        {"answer-after-close",
         Fault::AnswerAfterClose,
         "the last answer is repeated for ever, also when the debugger is closed"},
        {"flood", Fault::Flood, "every answer comes 200 times"},
    }};
    return faults;
}

std::optional<Fault> FaultByName(std::string_view name)
{
    for (const NamedFault& named : NamedFaults()) {
        if (name == named.name) {
            return named.fault;
        }
    }
    return std::nullopt;
}

bool FaultInjector::Answer(AnswerKind kind, const CMD_DATA* answer)
{
    if (!m_fault || answer == nullptr) {
        return m_next.Answer(kind, answer);
    }
    return Spoil(kind, *answer);
}

bool FaultInjector::Spoil(AnswerKind kind, const CMD_DATA& answer)
{
    switch (*m_fault) {
    case Fault::LateAnswer:
        m_kept.push_back({kind, answer, m_ticks + lateTicks});
        return true;
    case Fault::WrongKey: {
        const CMD_DATA foreign = ForNobody(kind, answer);
        m_next.Answer(kind, &foreign);
        break;
    }
    case Fault::Length65535: {
        CMD_DATA wild = answer;
        wild.length = std::numeric_limits<std::uint16_t>::max();
        return m_next.Answer(kind, &wild);
    }
    case Fault::NullAnswer:
        m_next.Answer(kind, nullptr);
        break;
    case Fault::AnswerAfterClose:
        m_kept.assign(1, {kind, answer, m_ticks + repeatTicks});
        break;
    case Fault::Flood:
        for (int i = 1; i < floodCount; ++i) {
            m_next.Answer(kind, &answer);
        }
        break;
    }
    return m_next.Answer(kind, &answer);
}

void FaultInjector::Tick()
{
    ++m_ticks;
    while (!m_kept.empty() && m_kept.front().due <= m_ticks) {
        Kept kept = m_kept.front();
        m_kept.pop_front();
        m_next.Answer(kept.kind, &kept.record);
        if (m_fault == Fault::AnswerAfterClose) {
            kept.due = m_ticks + repeatTicks;
            m_kept.push_back(kept);
        }
    }
}

} // namespace plchost
