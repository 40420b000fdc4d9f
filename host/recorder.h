#pragma once

#include "answers.h"
#include "plcdebug_host.h"
#include "port.h"
#include "recording.h"

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

// Writes every request and every answer that crosses the boundary to a file. No windows. Any
// thread.

namespace plchost {

/// A recording that is being made. Every event is in the file as soon as it has happened. When the
/// file cannot be written, the recording ends there and everything else goes on.
class Recorder
{
public:
    /// @param listing the program debug file, whole.
    Recorder(const std::string& file, std::string_view listing);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder(Recorder&&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    Recorder& operator=(Recorder&&) = delete;

    void Request(const CMD_DATA& request);
    /// @param taken what the plug-in said: false when no debugger is open.
    void Answer(AnswerKind kind, const CMD_DATA* answer, bool taken);

    /// @return why the recording has ended early, if it has.
    base::Result<void> Check() const;

private:
    void Write(EventKind kind, bool taken, std::string bytes);
    void Append(std::string_view bytes);

    const std::string m_path;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    mutable std::mutex m_mutex; ///< Guards what follows; held while one event is written.
    int m_file = -1;            ///< -1: not open, or given up.
    base::Result<void> m_complete;
};

/// Records the answers on their way.
class RecordedAnswers : public AnswerSink
{
public:
    /// @param next outlives this.
    /// @param recorder outlives this; null: nothing is recorded.
    RecordedAnswers(AnswerSink& next, Recorder* recorder) : m_next(next), m_pRecorder(recorder) {}

    bool Answer(AnswerKind kind, const CMD_DATA* answer) override;

private:
    AnswerSink& m_next;
    Recorder* const m_pRecorder; // not owned
};

/// Records the requests on their way.
class RecordedRequests : public RequestHandler
{
public:
    /// @param next outlives this.
    /// @param recorder outlives this; null: nothing is recorded.
    RecordedRequests(RequestHandler& next, Recorder* recorder) : m_next(next), m_pRecorder(recorder)
    {
    }

    void Request(const CMD_DATA& request) override;

private:
    RequestHandler& m_next;
    Recorder* const m_pRecorder; // not owned
};

} // namespace plchost
