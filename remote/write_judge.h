#pragma once

#include "messages.h"
#include "write_list.h"

#include <deque>
#include <string>

// Which writes from far away are done. One thread.

namespace plcremote {

class WriteJudge
{
public:
    /// @param session of this run of the machine's program.
    WriteJudge(WriteList list, std::string session);

    /// To be asked once for each message that comes: the same one is not done twice.
    /// @param running time of the machine's program now.
    /// @return why it is not done.
    base::Result<void>
    Judge(const std::string& user, const WriteMessage& message, milliseconds running);

    /// Whether it is too late to do this write, as far as durations tell.
    static bool IsLate(const WriteMessage& message, milliseconds running);

private:
    const WriteList m_list;
    const std::string m_session;
    std::deque<std::string> m_seen; ///< Ids of the last writes.
};

/// Of a write that is not done, because it would be late.
constexpr const char* lateReason = "it came too late";

} // namespace plcremote
