#include "trace.h"

#include "record.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace plchost {

namespace {

constexpr std::size_t longestLine = 128;

template <typename... Values> std::string Print(const char* format, Values... values)
{
    std::array<char, longestLine> line{};
    std::snprintf(line.data(), line.size(), format, values...);
    return line.data();
}

std::string Number(std::int32_t value)
{
    return Print("%" PRId32 " (0x%08" PRIX32 ")", value, static_cast<std::uint32_t>(value));
}

std::string Key(const CMD_DATA& record)
{
    return Print("key %u", unsigned{record.key});
}

std::string Steps(const plc::StepRange& steps)
{
    return Print("%" PRId32 "..%" PRId32, steps.first, steps.last);
}

std::string DescribeDelete(const CMD_DATA& request)
{
    const std::int16_t argument = PlcArgumentOfDelete(&request);
    if (argument == PLC_DELETE_ARG_START) {
        return "start   " + Key(request);
    }
    if (argument == PLC_DELETE_ARG_RELEASE) {
        return "release " + Key(request);
    }
    return "delete  " + Key(request) + Print("  unknown argument %d", int{argument});
}

std::string DescribeStates(const CMD_DATA& answer)
{
    std::string text;
    for (const plc::StepState& state : AnsweredStates(answer)) {
        text += state.logicResult ? " 1" : " 0";
        if (state.accumulator) {
            text += Print(":%" PRId32, *state.accumulator);
        }
    }
    return text;
}

} // namespace

std::string DescribeRequest(const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return "read    " + Key(request) + "  " + OperandOf(request);
    case PLC_CMD_WRITE_VAR:
        return "write   " + OperandOf(request) + " = " + Number(PlcWrittenValue(&request));
    case PLC_CMD_DELETE_VAR:
        return DescribeDelete(request);
    case PLC_CMD_PRG_STATE:
        if (const auto steps = RequestedSteps(request)) {
            return "steps   " + Steps(*steps);
        }
        return "steps   stop";
    default:
        return Print(
                   "unknown command 0x%04X, length %u, ",
                   unsigned{request.command},
                   unsigned{request.length}) +
               Key(request);
    }
}

std::string DescribeAnswer(AnswerKind kind, const CMD_DATA* answer)
{
    const std::string what = kind == AnswerKind::ReadVar ? "value   " : "states  ";
    if (answer == nullptr) {
        return what + "null pointer";
    }
    std::string text = kind == AnswerKind::ReadVar
                           ? Key(*answer) + "  " + Number(PlcAnsweredValue(answer))
                           : Steps(AnsweredSteps(*answer)) + " " + DescribeStates(*answer);
    if (answer->length > PLC_CMD_SIZE) {
        text += Print("  (length %u)", unsigned{answer->length});
    }
    return what + text;
}

void Trace::Request(const CMD_DATA& request)
{
    Line("->", DescribeRequest(request));
}

void Trace::Answer(AnswerKind kind, const CMD_DATA* answer, bool taken)
{
    Line("<-", DescribeAnswer(kind, answer) + (taken ? "" : "  (not taken)"));
}

void Trace::Line(const char* direction, const std::string& text)
{
    using std::chrono::milliseconds;
    const auto time =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - m_start);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const std::lock_guard lock(m_mutex);
    // Not as a floating-point number: the point would follow the locale.
    m_out << Print(
                 "%5lld.%03d ",
                 static_cast<long long>(seconds.count()),
                 static_cast<int>((time - seconds).count()))
          << direction << ' ' << text << std::endl;
}

bool TracedAnswers::Answer(AnswerKind kind, const CMD_DATA* answer)
{
    const bool taken = m_next.Answer(kind, answer);
    m_trace.Answer(kind, answer, taken);
    return taken;
}

void TracedRequests::Request(const CMD_DATA& request)
{
    m_trace.Request(request);
    m_next.Request(request);
}

} // namespace plchost
