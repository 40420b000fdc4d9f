#pragma once

#include "machine_link.h"
#include "viewers.h"
#include "write_judge.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// The writes that viewers ask a machine for: judged, done once or not at all, each with a line and
// an answer. One thread.

namespace plcremote {

class PublishedWrites
{
public:
    using Time = Viewers::Time;
    using Log = std::function<void(const std::string& line)>;

    /// @param link outlives it.
    PublishedWrites(plclink::MachineLink& link, WriteJudge judge, Log log, AnswerViewer answer);

    /// What is refused ends at once. @param running time of the machine's program now.
    /// @return whether it waits to be known what was there before: the operand has to be read.
    bool Take(const Viewer& viewer, const WriteMessage& message, milliseconds running, Time now);

    /// Begins what can begin, and ends what has ended.
    void Turn(milliseconds running, Time now);

    /// Operands whose value before is waited for.
    std::vector<plc::Operand> Operands() const;

    /// Ends what has not begun; what has begun cannot be called back and ends in its time.
    void GiveUp(const std::string& reason);

    /// Says of what has begun that nobody will know how it ended. The last call.
    void Close();

private:
    /// A write that is under way.
    struct Writing
    {
        Viewer viewer{};
        WriteMessage message{};
        std::optional<std::uint32_t> before{}; ///< Known as soon as it has begun.
        Time came{};
        std::optional<base::Result<void>> end{}; ///< Nothing yet.
    };

    /// What the link has said of writes. Lives as long as anybody may say something.
    struct Inbox
    {
        std::mutex mutex;                                 ///< Guards ends.
        std::map<std::string, base::Result<void>> ends{}; ///< By id.
    };

    void TakeEnds();
    void Begin(Writing& writing, milliseconds running, Time now);
    void End(const Writing& writing, const base::Result<void>& done) const;

    plclink::MachineLink& m_link;
    WriteJudge m_judge;
    const Log m_log;
    const AnswerViewer m_answer;
    const std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();
    std::vector<Writing> m_writings;
};

} // namespace plcremote
