#include "recordinghost.h"

#include <array>
#include <cstdlib>
#include <utility>

namespace {

using Callback = RecordedRequest::Callback;

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

std::string OperandOf(const CMD_DATA& request)
{
    std::array<char, PLC_OPERAND_SIZE> name{};
    return {name.data(), PlcOperandOf(&request, name.data())};
}

std::string DeleteInWords(const CMD_DATA& record)
{
    const std::string key = std::to_string(record.key);
    switch (const std::int16_t argument = PlcArgumentOfDelete(&record)) {
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
    if (PlcIsStop(&record)) {
        return "stop";
    }
    return "state " + std::to_string(PlcFirstStep(&record)) + ".." +
           std::to_string(PlcLastStep(&record)) + " count " + std::to_string(record.key);
}

std::pair<Callback, std::string> ByCommand(const CMD_DATA& record)
{
    switch (record.command) {
    case PLC_CMD_READ_VAR:
        return {Callback::Read, "read " + std::to_string(record.key) + " " + OperandOf(record)};
    case PLC_CMD_WRITE_VAR:
        return {
            Callback::Write,
            "write " + OperandOf(record) + "=" + std::to_string(PlcWrittenValue(&record))};
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
