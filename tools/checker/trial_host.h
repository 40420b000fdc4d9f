#pragma once

#include "answers.h"
#include "loader.h"
#include "plcdebug_host.h"
#include "port.h"
#include "settings.h"
#include "steps.h"
#include "wx_host.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
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
    /// Says a figure that is neither right nor wrong.
    /// @param what it is, with its unit.
    void Figure(int value, const std::string& what) const;
    /// Says that the check has come to its end.
    void Done() const;

    /// What a line begins with.
    static constexpr char stepMark = '>';
    static constexpr char wrongMark = '!';
    static constexpr char figureMark = '=';
    static constexpr char doneMark = '.';

private:
    void Line(char mark, const std::string& text) const;

    int m_file;
};

/// A machine with a short list of variables, whose debugger is the library under check. A dialog
/// that no check expects, a complaint of the toolkit, a wrong request, a callback on a foreign
/// thread and what a wxWidgets program loses are findings. One at a time.
class TrialHost : private plchost::RequestHandler
{
public:
    /// @param plugin, report outlive the host.
    /// @param slowest that a create or a destroy may take.
    /// @param folder for its files; it exists.
    /// @param program outlives the host as well; null in a plain GTK host.
    TrialHost(
        const plchost::Plugin& plugin,
        const Report& report,
        std::chrono::milliseconds slowest,
        const std::string& folder,
        WxHost* program);
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

    /// The machine's files, with the configuration that names the list.
    const plchost::ConfigFiles& Files() const { return m_files; }

    /// The library's file.
    const std::string& Library() const { return m_plugin.path; }

    /// Operands of the list.
    static const std::vector<std::string>& Operands();

    /// The steps of the program; 0 is the line of its title.
    static constexpr plc::StepRange programSteps{1, 3};

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

    /// The write requests so far.
    const std::vector<CMD_DATA>& Writes() const { return m_writes; }

    /// The steps that are subscribed; none when none are.
    const std::optional<plc::StepRange>& Steps() const { return m_steps; }

    const Report& Reports() const { return m_report; }

    /// The wxWidgets program that runs the check; null in a plain GTK host.
    WxHost* Program() const { return m_program; }

private:
    void Request(const CMD_DATA& request) override;
    void LookAfterTheProgram();
    void LookForDialogs();
    void RequireSoon(const char* call, std::chrono::steady_clock::time_point start);

    const plchost::Plugin& m_plugin;
    const Report& m_report;
    const std::chrono::milliseconds m_slowest;
    WxHost* const m_program;
    plchost::ConfigFiles m_files;
    plchost::ThreadRule m_threads;
    plchost::RequestPort m_port;
    std::map<std::uint16_t, std::string> m_read; ///< Not started yet.
    std::map<std::uint16_t, std::string> m_served;
    std::vector<CMD_DATA> m_writes;
    std::optional<plc::StepRange> m_steps;
    unsigned m_timer;
};

} // namespace plccheck
