#pragma once

#include "answers.h"
#include "plcdebug_host.h"
#include "port.h"

#include <chrono>
#include <mutex>
#include <ostream>
#include <string>

// A readable line for every record that crosses the boundary. No windows. Any thread.

namespace plchost {

/// For example "read    key 5  EB10".
std::string DescribeRequest(const CMD_DATA& request);

/// For example "value   key 5  17 (0x00000011)".
std::string DescribeAnswer(AnswerKind kind, const CMD_DATA* answer);

/// Writes one line for each record, with the seconds since the trace began.
class Trace
{
public:
    /// @param out outlives the trace.
    explicit Trace(std::ostream& out) : m_out(out) {}

    void Request(const CMD_DATA& request);
    /// @param taken what the plug-in said: false when no debugger is open.
    void Answer(AnswerKind kind, const CMD_DATA* answer, bool taken);

private:
    void Line(const char* direction, const std::string& text);

    std::ostream& m_out;
    std::mutex m_mutex; ///< Held while one line is written: requests and answers come at once.
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Traces the answers on their way.
class TracedAnswers : public AnswerSink
{
public:
    /// @param next, trace both outlive this.
    TracedAnswers(AnswerSink& next, Trace& trace) : m_next(next), m_trace(trace) {}

    bool Answer(AnswerKind kind, const CMD_DATA* answer) override;

private:
    AnswerSink& m_next;
    Trace& m_trace;
};

/// Traces the requests on their way.
class TracedRequests : public RequestHandler
{
public:
    /// @param next, trace both outlive this.
    TracedRequests(RequestHandler& next, Trace& trace) : m_next(next), m_trace(trace) {}

    void Request(const CMD_DATA& request) override;

private:
    RequestHandler& m_next;
    Trace& m_trace;
};

} // namespace plchost
