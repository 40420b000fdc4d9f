#pragma once

#include "answers.h"
#include "loader.h"
#include "plcdebug_host.h"
#include "port.h"
#include "settings.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

// The host of one check: files, callbacks, main loop, and a way to say what is wrong. GUI thread.

namespace plccheck {

/// Where the findings of a check go, one line each.
class Report
{
public:
    /// @param file descriptor to which lines are written at once: what a crash leaves counts.
    explicit Report(int file) : m_file(file) {}

    /// Says what comes next, so that a crash or a standstill can be placed.
    void Step(const std::string& step) const;
    void Wrong(const std::string& finding) const;
    /// Says that the check has come to its end.
    void Done() const;

    /// What a line begins with.
    static constexpr char stepMark = '>';
    static constexpr char wrongMark = '!';
    static constexpr char doneMark = '.';

private:
    void Line(char mark, const std::string& text) const;

    int m_file;
};

/// A machine with a short list of variables, whose debugger is the library under check. A dialog
/// that no check expects, a complaint of the toolkit, a wrong request and a callback on a foreign
/// thread are findings. One at a time.
class TrialHost : private plchost::RequestHandler
{
public:
    /// @param plugin, report outlive the host.
    TrialHost(const plchost::Plugin& plugin, const Report& report);
    ~TrialHost() override;
    TrialHost(const TrialHost&) = delete;
    TrialHost(TrialHost&&) = delete;
    TrialHost& operator=(const TrialHost&) = delete;
    TrialHost& operator=(TrialHost&&) = delete;

    /// The record for the export; a check may change it before Create().
    PLC_DBG_INIT init;

    /// Runs inside every request callback; may be empty.
    std::function<void(const CMD_DATA& request)> reaction;

    /// Every dialog is confirmed and no finding.
    bool expectsDialogs = false;

    /// Folder of the machine's files, with the configuration that names the list.
    const std::string& Folder() const { return m_files.folder; }

    /// Operands of the list.
    static const std::vector<std::string>& Operands();

    /// Calls the export. @return its result.
    int Create();
    void Destroy();

    /// Creates the debugger and waits for its window and for the requests of its list.
    /// @return false when that is a finding.
    bool Open();

    /// A finding unless the window has gone and every variable is released.
    bool IsGone();

    /// Calls the export. @return its result. Any thread.
    int Answer(plchost::AnswerKind kind, const CMD_DATA* answer) const;

    /// Runs the main loop until a condition holds.
    /// @return false when it does not within a generous limit; that is a finding.
    bool Await(const std::string& what, const std::function<bool()>& condition);

    /// A finding unless it holds.
    bool Require(bool holds, const std::string& finding);

    /// Variables that are served: read, started and not released. By key.
    const std::map<std::uint16_t, std::string>& Served() const { return m_served; }

    const Report& Reports() const { return m_report; }

private:
    void Request(const CMD_DATA& request) override;
    void LookForDialogs();

    const plchost::Plugin& m_plugin;
    const Report& m_report;
    plchost::ConfigFiles m_files;
    plchost::ThreadRule m_threads;
    plchost::RequestPort m_port;
    std::map<std::uint16_t, std::string> m_read; ///< Not started yet.
    std::map<std::uint16_t, std::string> m_served;
    unsigned m_timer;
};

} // namespace plccheck
