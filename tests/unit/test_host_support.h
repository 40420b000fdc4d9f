#pragma once

#include "answers.h"
#include "plcdebug_host.h"
#include "records.h"

#include <mutex>
#include <utility>
#include <vector>

// A sink that records answers.

namespace plchost {

struct RecordedAnswer
{
    AnswerKind kind;
    bool null;
    CMD_DATA record;
};

/// Records every answer. Any thread; the list is to be read when the others are done.
class RecordingSink : public AnswerSink
{
public:
    bool Answer(AnswerKind kind, const CMD_DATA* answer) override
    {
        const std::lock_guard lock(m_mutex);
        if (!open) {
            return false;
        }
        answers.push_back({kind, answer == nullptr, answer == nullptr ? CMD_DATA{} : *answer});
        return answer != nullptr;
    }

    /// @return what has been recorded since the last call.
    std::vector<RecordedAnswer> Take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(answers, {});
    }

    bool open = true; ///< False: nobody takes answers. Set before other threads run.
    std::vector<RecordedAnswer> answers;

private:
    std::mutex m_mutex;
};

} // namespace plchost
