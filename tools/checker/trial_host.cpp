#include "trial_host.h"

#include "assembler.h"
#include "complaints.h"
#include "debug_file.h"
#include "record.h"
#include "request_rule.h"
#include "window.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace plccheck {

namespace {

/// Far beyond what a slow machine needs; only what is wrong is waited for so long.
constexpr std::chrono::seconds waitLimit{20};
using Clock = std::chrono::steady_clock;
constexpr guint lookAgainMs = 5;

GLogWriterOutput
NoteComplaint(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer report)
{
    if (const std::string complaint = ComplaintIn(level, fields, count); !complaint.empty()) {
        static_cast<const Report*>(report)->Wrong("the toolkit complains: " + complaint);
    }
    return G_LOG_WRITER_HANDLED;
}

/// Writes the files that a debugger finds.
base::Result<void> WriteFiles(const plchost::ConfigFiles& files)
{
    const auto assembly = plc::Assemble("OB1: TITLE Check\n U E0.0\n = A0.0\n BE\n", "check");
    if (!assembly.program) {
        throw std::logic_error("the program of the checks has errors");
    }
    if (auto written = plc::WriteDebugFile(*assembly.program, files.prefix); !written) {
        return written;
    }
    std::string list;
    for (const std::string& operand : TrialHost::Operands()) {
        list += operand + "/D\n";
    }
    return plchost::UseWatchList(files, list);
}

} // namespace

void Report::Step(const std::string& step) const
{
    Line(stepMark, step);
}

void Report::Wrong(const std::string& finding) const
{
    Line(wrongMark, finding);
}

void Report::Figure(int value, const std::string& what) const
{
    Line(figureMark, std::to_string(value) + ' ' + what);
}

void Report::Done() const
{
    Line(doneMark, "");
}

void Report::Line(char mark, const std::string& text) const
{
    std::string line = mark + text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    if (write(m_file, line.data(), line.size()) < 0) {
        _exit(1); // nobody reads the report any more
    }
}

TrialHost::TrialHost(
    const plchost::Plugin& plugin,
    const Report& report,
    std::chrono::milliseconds slowest,
    const std::string& folder,
    WxHost* program)
    : init{}, m_plugin(plugin), m_report(report), m_slowest(slowest), m_program(program),
      m_files(plchost::FilesIn(folder, "machine")), m_threads(std::this_thread::get_id()),
      m_port(*this, m_threads, false)
{
    if (const auto written = WriteFiles(m_files); !written) {
        throw std::runtime_error(written.Message());
    }
    init = m_port.InitRecord(m_files.prefix);
    g_log_set_writer_func(NoteComplaint, const_cast<Report*>(&report), nullptr);
    const auto look = [](gpointer host) -> gboolean {
        static_cast<TrialHost*>(host)->LookForDialogs();
        return G_SOURCE_CONTINUE;
    };
    // Behind what the library has to draw: a picture may take longer than until the next look.
    m_timer = g_timeout_add_full(G_PRIORITY_DEFAULT_IDLE, lookAgainMs, look, this, nullptr);
}

TrialHost::~TrialHost()
{
    g_source_remove(m_timer);
    if (const auto kept = m_threads.Check(); !kept) {
        m_report.Wrong(kept.Message());
    }
}

const std::vector<std::string>& TrialHost::Operands()
{
    static const std::vector<std::string> operands{"MW20", "EB3", "MD4", "DB10.DBW4"};
    return operands;
}

int TrialHost::Create()
{
    m_report.Step("creates the debugger");
    const auto start = Clock::now();
    const int created = m_plugin.create(&init);
    RequireSoon("create", start);
    m_report.Step("runs the debugger");
    return created;
}

void TrialHost::Destroy()
{
    m_report.Step("destroys the debugger");
    const auto start = Clock::now();
    m_plugin.destroy();
    RequireSoon("destroy", start);
    m_report.Step("goes on after the debugger was destroyed");
    LookAfterTheProgram();
}

bool TrialHost::Open()
{
    const std::size_t expected = init.pfnReadVarRequest == nullptr ? 0 : Operands().size();
    return Require(Create() == 1, "create does not return 1") &&
           Await("a window of the debugger", [] { return DebuggerWindow() != nullptr; }) &&
           Await("read and start requests for the whole list", [&] {
               return m_served.size() == expected;
           });
}

bool TrialHost::IsGone()
{
    const CMD_DATA answer = PlcMakeReadAnswer(0, 1);
    const bool closed = Await("the window to go", [] { return DebuggerWindow() == nullptr; });
    const bool deaf = Await("answers to be refused once no debugger is open", [&] {
        return Answer(plchost::AnswerKind::ReadVar, &answer) == 0;
    });
    for (const auto& [key, operand] : m_served) {
        m_report.Wrong("the variable " + operand + " is never released");
    }
    return closed && deaf && m_served.empty();
}

int TrialHost::Answer(plchost::AnswerKind kind, const CMD_DATA* answer) const
{
    // The export takes a pointer that it could write through, and never does.
    auto* const bytes = reinterpret_cast<unsigned char*>(const_cast<CMD_DATA*>(answer));
    return kind == plchost::AnswerKind::ReadVar ? m_plugin.answerReadVar(bytes)
                                                : m_plugin.answerProgramState(bytes);
}

bool TrialHost::Await(const std::string& what, const std::function<bool()>& condition)
{
    const auto end = Clock::now() + waitLimit;
    while (!condition()) {
        if (Clock::now() > end) {
            return Require(false, "waited in vain for " + what);
        }
        // The timer that looks for dialogs ends each wait. To draw comes after all else: where a
        // look at the window takes longer than until the debugger's next tick, it would never be
        // its turn.
        g_main_context_iteration(nullptr, TRUE);
        while (g_main_context_pending(nullptr) != FALSE && Clock::now() <= end) {
            g_main_context_iteration(nullptr, FALSE);
        }
    }
    LookAfterTheProgram();
    return true;
}

bool TrialHost::Require(bool holds, const std::string& finding)
{
    if (!holds) {
        m_report.Wrong(finding);
    }
    return holds;
}

void TrialHost::Request(const CMD_DATA& request)
{
    if (const auto right = CheckRequest(request); !right) {
        m_report.Wrong(right.Message());
    }
    if (request.command == PLC_CMD_WRITE_VAR) {
        m_writes.push_back(request);
    }
    if (request.command == PLC_CMD_PRG_STATE) {
        m_steps = plchost::RequestedSteps(request);
    }
    if (request.command == PLC_CMD_READ_VAR) {
        m_read[request.key] = plchost::OperandOf(request);
    }
    if (request.command == PLC_CMD_DELETE_VAR) {
        if (PlcArgumentOfDelete(&request) == PLC_DELETE_ARG_START) {
            m_served.insert(m_read.extract(request.key));
        } else {
            Require(
                m_served.erase(request.key) + m_read.erase(request.key) == 1,
                "key " + std::to_string(request.key) + " is released and was not in use");
        }
    }
    if (reaction) {
        reaction(request);
    }
}

void TrialHost::RequireSoon(const char* call, Clock::time_point start)
{
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    m_report.Figure(static_cast<int>(took.count()), std::string("ms for a ") + call);
    Require(
        took <= m_slowest,
        std::string(call) + " takes longer than " + std::to_string(m_slowest.count()) + " ms");
}

void TrialHost::LookAfterTheProgram()
{
    const std::string loss = m_program == nullptr ? "" : m_program->Loss();
    if (!loss.empty()) {
        m_report.Wrong(loss);
        _exit(1); // there may be nothing left to go on with
    }
}

void TrialHost::LookForDialogs()
{
    GtkWindow* const dialog = OpenDialog();
    if (dialog == nullptr) {
        return;
    }
    if (!expectsDialogs) {
        m_report.Wrong("a dialog appears: " + DescribeDialog(dialog));
        _exit(1); // nobody is there to answer it
    }
    Confirm(dialog);
}

} // namespace plccheck
