#include "recorder.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace plchost {

namespace {

constexpr mode_t fileMode = 0666;

} // namespace

Recorder::Recorder(const std::string& file, std::string_view listing)
    : m_path(file), m_file(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, fileMode))
{
    if (m_file < 0) {
        m_complete = base::Failure{
            "cannot write the recording \"" + m_path + "\": " + std::strerror(errno) +
            "; nothing is recorded"};
    } else {
        Append(EncodeRecordingHead());
    }
    Write(EventKind::Listing, true, std::string(listing));
}

Recorder::~Recorder()
{
    if (m_file >= 0) {
        close(m_file);
    }
}

void Recorder::Request(const CMD_DATA& request)
{
    Write(EventKind::Request, true, CountingBytes(&request));
}

void Recorder::Answer(AnswerKind kind, const CMD_DATA* answer, bool taken)
{
    Write(
        kind == AnswerKind::ReadVar ? EventKind::ReadAnswer : EventKind::ProgramStateAnswer,
        taken,
        CountingBytes(answer));
}

base::Result<void> Recorder::Check() const
{
    const std::lock_guard lock(m_mutex);
    return m_complete;
}

void Recorder::Write(EventKind kind, bool taken, std::string bytes)
{
    using std::chrono::microseconds;
    const std::lock_guard lock(
        m_mutex); // held for the clock too, so that times never run backwards
    const auto time = std::chrono::steady_clock::now() - m_start;
    if (m_file >= 0) {
        Append(EncodeEvent(
            {std::chrono::duration_cast<microseconds>(time), kind, taken, std::move(bytes)}));
    }
}

void Recorder::Append(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(m_file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            m_complete = base::Failure{
                "the recording \"" + m_path + "\" ends early: " + std::strerror(errno)};
            close(std::exchange(m_file, -1));
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool RecordedAnswers::Answer(AnswerKind kind, const CMD_DATA* answer)
{
    const bool taken = m_next.Answer(kind, answer);
    if (m_pRecorder != nullptr) {
        m_pRecorder->Answer(kind, answer, taken);
    }
    return taken;
}

void RecordedRequests::Request(const CMD_DATA& request)
{
    if (m_pRecorder != nullptr) {
        m_pRecorder->Request(request);
    }
    m_next.Request(request);
}

} // namespace plchost
