#include "published_writes.h"

#include "time_of_day.h"

#include <utility>

namespace plcremote {

namespace {

/// How long a write waits for the value before it.
constexpr milliseconds longestLook{500};

std::string ValueText(const std::optional<std::uint32_t>& value)
{
    return value ? std::to_string(*value) : "?";
}

} // namespace

PublishedWrites::PublishedWrites(
    plclink::MachineLink& link, WriteJudge judge, Log log, AnswerViewer answer)
    : m_link(link), m_judge(std::move(judge)), m_log(std::move(log)), m_answer(std::move(answer))
{
}

bool PublishedWrites::Take(
    const Viewer& viewer, const WriteMessage& message, milliseconds running, Time now)
{
    const Writing writing{viewer, message, std::nullopt, now};
    auto judged = m_judge.Judge(viewer.user, message, running);
    if (judged) {
        judged = m_link.Check(message.operand);
    }
    if (!judged) {
        End(writing, judged);
        return false;
    }
    m_writings.push_back(writing);
    return true;
}

void PublishedWrites::Turn(milliseconds running, Time now)
{
    for (Writing& writing : m_writings) {
        if (!writing.before) {
            Begin(writing, running, now);
        }
    }
    TakeEnds();
    for (auto writing = m_writings.begin(); writing != m_writings.end();) {
        if (writing->end) {
            End(*writing, *writing->end);
            writing = m_writings.erase(writing);
        } else {
            ++writing;
        }
    }
}

std::vector<plc::Operand> PublishedWrites::Operands() const
{
    std::vector<plc::Operand> operands;
    for (const Writing& writing : m_writings) {
        operands.push_back(writing.message.operand);
    }
    return operands;
}

void PublishedWrites::GiveUp(const std::string& reason)
{
    for (auto writing = m_writings.begin(); writing != m_writings.end();) {
        if (writing->before) {
            ++writing;
        } else {
            End(*writing, base::Failure{reason});
            writing = m_writings.erase(writing);
        }
    }
}

void PublishedWrites::Close()
{
    TakeEnds();
    const base::Result<void> unknown = base::Failure{"the program has ended meanwhile"};
    for (const Writing& writing : m_writings) {
        End(writing, writing.end ? *writing.end : unknown);
    }
    m_writings.clear();
}

void PublishedWrites::TakeEnds()
{
    std::map<std::string, base::Result<void>> ends;
    {
        const std::lock_guard lock(m_inbox->mutex);
        ends.swap(m_inbox->ends);
    }
    for (Writing& writing : m_writings) {
        if (const auto found = ends.find(writing.message.id); found != ends.end()) {
            writing.end = found->second;
        }
    }
}

/// Writes as soon as it is known what was there before.
void PublishedWrites::Begin(Writing& writing, milliseconds running, Time now)
{
    const auto newest = m_link.Newest(writing.message.operand);
    if (!newest && now - writing.came < longestLook) {
        return;
    }
    if (!newest) {
        writing.end = base::Failure{"the machine does not let it be read"};
        return;
    }
    if (WriteJudge::IsLate(writing.message, running)) {
        writing.end = base::Failure{lateReason};
        return;
    }
    writing.before = newest->value;
    m_link.Write(
        writing.message.operand,
        writing.message.value,
        [inbox = m_inbox, id = writing.message.id](const base::Result<void>& done) {
            const std::lock_guard lock(inbox->mutex);
            inbox->ends.emplace(id, done);
        });
}

/// A line for it, and an answer.
void PublishedWrites::End(const Writing& writing, const base::Result<void>& done) const
{
    const WriteMessage& message = writing.message;
    std::optional<std::uint32_t> now;
    if (const auto newest = m_link.Newest(message.operand)) {
        now = newest->value;
    }
    const auto before = writing.before ? writing.before : now;
    const auto after = done ? message.value : now;
    const std::string result = writing.before ? " not confirmed" : " refused";
    m_log(
        base::TimeOfDay(std::chrono::system_clock::now()) + " write from " + writing.viewer.user +
        ": " + plc::OperandName(message.operand) + ' ' + ValueText(before) + " -> " +
        std::to_string(message.value) +
        (done ? " done" : result + ", it is " + ValueText(after) + ": " + done.Message()));
    m_answer(writing.viewer, WrittenMessage{message.id, before, after, done ? "" : done.Message()});
}

} // namespace plcremote
