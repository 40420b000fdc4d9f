#include "write_judge.h"

#include <algorithm>
#include <utility>

namespace plcremote {

WriteJudge::WriteJudge(WriteList list, std::string session)
    : m_list(std::move(list)), m_session(std::move(session))
{
}

base::Result<void>
WriteJudge::Judge(const std::string& user, const WriteMessage& message, milliseconds running)
{
    // More than can come within the time in which a write is not late.
    constexpr std::size_t remembered = 10000;
    if (std::find(m_seen.begin(), m_seen.end(), message.id) != m_seen.end()) {
        return base::Failure{"it has come before"};
    }
    m_seen.push_back(message.id);
    if (m_seen.size() > remembered) {
        m_seen.pop_front();
    }
    if (message.session != m_session) {
        return base::Failure{"it was meant for a former run of the machine's program"};
    }
    if (IsLate(message, running)) {
        return base::Failure{lateReason};
    }
    if (!m_list.Allows(user, message.operand)) {
        return base::Failure{"the machine does not let " + user + " write it from far away"};
    }
    return {};
}

bool WriteJudge::IsLate(const WriteMessage& message, milliseconds running)
{
    return running - message.running > writePatience;
}

} // namespace plcremote
