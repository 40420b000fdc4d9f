#include "recordinghost.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

using Callback = RecordedRequest::Callback;

constexpr std::size_t writeNameOffset = 4; ///< In the payload of a write request.
constexpr std::uint16_t readAnswerLength = 10;

RecordingHost* theHost = nullptr;

std::int32_t Keep(Callback callback, const CMD_DATA* request)
{
    if (theHost == nullptr) {
        std::abort(); // a request after the host has gone: nothing could report it otherwise
    }
    const RecordedRequest kept{callback, *request, std::this_thread::get_id()};
    theHost->requests.push_back(kept);
    if (theHost->reaction) {
        theHost->reaction(kept);
    }
    return 0;
}

extern "C" {

std::int32_t KeepTallFrame()
{
    ++theHost->tallFrameCalls;
    return theHost->tallFrame;
}

std::int32_t KeepRead(const CMD_DATA* request)
{
    return Keep(Callback::Read, request);
}

std::int32_t KeepWrite(const CMD_DATA* request)
{
    return Keep(Callback::Write, request);
}

std::int32_t KeepPrgState(const CMD_DATA* request)
{
    return Keep(Callback::PrgState, request);
}

std::int32_t KeepDelete(const CMD_DATA* request)
{
    return Keep(Callback::Delete, request);
}
}

template <typename T> T PayloadAt(const CMD_DATA& record, std::size_t offset)
{
    T value{};
    std::memcpy(&value, record.payload + offset, sizeof value);
    return value;
}

std::string NameAt(const CMD_DATA& record, std::size_t offset)
{
    const auto* begin = record.payload + offset;
    return {begin, std::find(begin, record.payload + PLC_CMD_PAYLOAD_SIZE, 0)};
}

std::string DeleteInWords(const CMD_DATA& record)
{
    const std::string key = std::to_string(record.key);
    switch (const auto argument = PayloadAt<std::int16_t>(record, 0)) {
    case PLC_DELETE_ARG_START:
        return "start " + key;
    case PLC_DELETE_ARG_RELEASE:
        return "release " + key;
    default:
        return "delete " + key + " arg " + std::to_string(argument);
    }
}

std::string StateInWords(const CMD_DATA& record)
{
    const auto first = PayloadAt<std::int32_t>(record, 0);
    const auto last = PayloadAt<std::int32_t>(record, sizeof first);
    if (record.key == 0 && first == 0 && last == 0) {
        return "stop";
    }
    return "state " + std::to_string(first) + ".." + std::to_string(last) + " count " +
           std::to_string(record.key);
}

std::pair<Callback, std::string> ByCommand(const CMD_DATA& record)
{
    switch (record.command) {
    case PLC_CMD_READ_VAR:
        return {Callback::Read, "read " + std::to_string(record.key) + " " + NameAt(record, 0)};
    case PLC_CMD_WRITE_VAR:
        return {
            Callback::Write,
            "write " + NameAt(record, writeNameOffset) + "=" +
                std::to_string(PayloadAt<std::int32_t>(record, 0))};
    case PLC_CMD_DELETE_VAR:
        return {Callback::Delete, DeleteInWords(record)};
    case PLC_CMD_PRG_STATE:
        return {Callback::PrgState, StateInWords(record)};
    default:
        return {Callback::Read, "unknown command " + std::to_string(record.command)};
    }
}

const char* NameOf(Callback callback)
{
    switch (callback) {
    case Callback::Read:
        return "read";
    case Callback::Write:
        return "write";
    case Callback::PrgState:
        return "state";
    case Callback::Delete:
        break;
    }
    return "delete";
}

} // namespace

std::vector<std::uint8_t> RecordedRequest::Bytes() const
{
    std::vector<std::uint8_t> bytes(std::min<std::size_t>(record.length, sizeof record));
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

std::string RecordedRequest::InWords() const
{
    const auto [belongsTo, words] = ByCommand(record);
    return belongsTo == callback ? words : words + " (via " + NameOf(callback) + ")";
}

RecordingHost::RecordingHost(const std::string& pathPrefix)
{
    theHost = this;
    pathPrefix.copy(init.szPath, sizeof init.szPath - 1);
    init.pfnTallFrame = KeepTallFrame;
    init.pfnReadVarRequest = KeepRead;
    init.pfnWriteVarRequest = KeepWrite;
    init.pfnPrgStateRequest = KeepPrgState;
    init.pfnDeleteVarRequest = KeepDelete;
}

RecordingHost::~RecordingHost()
{
    theHost = nullptr;
}

std::vector<std::string> RecordingHost::InWords() const
{
    std::vector<std::string> words;
    words.reserve(requests.size());
    for (const RecordedRequest& request : requests) {
        words.push_back(request.InWords());
    }
    return words;
}

std::vector<std::string> RecordingHost::TakeInWords()
{
    std::vector<std::string> words = InWords();
    requests.clear();
    return words;
}

CMD_DATA ReadAnswer(std::uint16_t key, std::int32_t value)
{
    CMD_DATA answer{};
    answer.command = PLC_CMD_READ_VAR;
    answer.length = readAnswerLength;
    answer.key = key;
    std::memcpy(answer.payload, &value, sizeof value);
    return answer;
}
