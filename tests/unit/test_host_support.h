#pragma once

#include "answers.h"
#include "plcdebug_host.h"

#include <cstring>
#include <initializer_list>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

// Requests as the debugger sends them, and a sink that records answers.

namespace plchost {

inline CMD_DATA RequestOf(std::initializer_list<std::uint8_t> bytes)
{
    CMD_DATA request{};
    std::memcpy(&request, bytes.begin(), bytes.size());
    return request;
}

inline CMD_DATA ReadRequest(std::uint16_t key, const std::string& operand)
{
    CMD_DATA request{};
    request.command = PLC_CMD_READ_VAR;
    request.length = static_cast<std::uint16_t>(operand.size() + 7);
    request.key = key;
    std::memcpy(request.payload, operand.data(), operand.size());
    return request;
}

inline CMD_DATA WriteRequestFor(const std::string& operand, std::int32_t value)
{
    CMD_DATA request{};
    request.command = PLC_CMD_WRITE_VAR;
    request.length = static_cast<std::uint16_t>(operand.size() + 11);
    std::memcpy(request.payload, &value, sizeof value);
    std::memcpy(request.payload + sizeof value, operand.data(), operand.size());
    return request;
}

inline CMD_DATA DeleteRequest(std::uint16_t key, std::int16_t argument)
{
    CMD_DATA request{};
    request.command = PLC_CMD_DELETE_VAR;
    request.length = 8;
    request.key = key;
    std::memcpy(request.payload, &argument, sizeof argument);
    return request;
}

inline CMD_DATA StepsRequest(std::int32_t first, std::int32_t last)
{
    CMD_DATA request{};
    request.command = PLC_CMD_PRG_STATE;
    request.length = 14;
    request.key = static_cast<std::uint16_t>(last - first + 1);
    std::memcpy(request.payload, &first, sizeof first);
    std::memcpy(request.payload + sizeof first, &last, sizeof last);
    return request;
}

inline CMD_DATA StopRequest()
{
    CMD_DATA request{};
    request.command = PLC_CMD_PRG_STATE;
    request.length = 14;
    return request;
}

/// The bytes of a record that its length word covers.
inline std::vector<unsigned> BytesOf(const CMD_DATA& record)
{
    std::vector<std::uint8_t> bytes(record.length);
    std::memcpy(bytes.data(), &record, bytes.size());
    return {bytes.begin(), bytes.end()};
}

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
