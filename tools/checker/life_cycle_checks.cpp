#include "checks.h"
#include "window.h"

#include <algorithm>
#include <utility>

namespace plccheck {

namespace {

constexpr int rounds = 5;

void BeforeCreate(TrialHost& host)
{
    const CMD_DATA answer = PlcMakeReadAnswer(0, 1);
    for (const auto kind : {plchost::AnswerKind::ReadVar, plchost::AnswerKind::ProgramState}) {
        host.Require(host.Answer(kind, &answer) == 0, "an answer before create is taken");
        host.Require(host.Answer(kind, nullptr) == 0, "a null answer before create is taken");
    }
    host.Destroy();
    if (host.Open()) {
        host.Destroy();
    }
}

void OpenAndClose(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    std::vector<std::string> operands;
    for (const auto& [key, operand] : host.Served()) {
        operands.push_back(operand);
    }
    host.Require(operands == TrialHost::Operands(), "the list is not asked for in its order");
    host.Destroy();
    host.IsGone();
}

void RecordMayGo(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.init = {};
    host.Destroy();
    host.IsGone();
}

void AgainAndAgain(TrialHost& host)
{
    for (int round = 0; round < rounds; ++round) {
        if (!host.Open()) {
            return;
        }
        host.Require(host.Served().count(0) == 1, "a new debugger does not count keys from 0");
        host.Destroy();
        if (!host.IsGone()) {
            return;
        }
    }
}

void DestroyedTwice(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Destroy();
    host.Destroy();
    if (host.IsGone() && host.Open()) {
        host.Destroy();
    }
}

void ClosedByTheOperator(TrialHost& host)
{
    for (int round = 0; round < rounds; ++round) {
        if (!host.Open()) {
            return;
        }
        host.Reports().Step("closes the window");
        gtk_window_close(DebuggerWindow());
        if (!host.Await(
                "the releases after the close box", [&] { return host.Served().empty(); })) {
            return;
        }
        if (!host.IsGone()) {
            return;
        }
        host.Destroy();
    }
}

void DestroyedInsideACallback(TrialHost& host)
{
    bool destroyed = false;
    host.reaction = [&](const CMD_DATA& request) {
        if (request.command == PLC_CMD_READ_VAR && !std::exchange(destroyed, true)) {
            host.Destroy();
        }
    };
    host.Require(host.Create() == 0, "create does not return 0 when a callback has destroyed");
    host.IsGone();
    host.reaction = nullptr;
    if (host.Open()) {
        host.Destroy();
    }
}

void NullCallbacks(TrialHost& host)
{
    const auto path = host.init;
    host.init = {};
    std::copy(std::begin(path.szPath), std::end(path.szPath), host.init.szPath);
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("closes the window");
    gtk_window_close(DebuggerWindow());
    host.IsGone();
    host.Destroy();
}

/// The path is long enough to fill its field with nothing behind it.
void PathWithoutZero(TrialHost& host)
{
    const std::string name = "machine";
    std::string path = host.Files().folder + "/";
    while (path.size() + name.size() < PLC_PATH_SIZE) {
        path += (PLC_PATH_SIZE - path.size() - name.size()) % 2 == 0 ? "./" : "/";
    }
    path += name;
    path.copy(host.init.szPath, PLC_PATH_SIZE);
    if (!host.Open()) {
        return;
    }
    host.Destroy();
    host.IsGone();
}

void PathThatIsNoText(TrialHost& host)
{
    const std::string path = "/\xff\xfe/no such folder/machine";
    host.init.szPath[path.copy(host.init.szPath, PLC_PATH_SIZE - 1)] = '\0';
    host.expectsDialogs = true;
    host.Require(host.Create() == 1, "create does not return 1");
    host.Await("a window of the debugger", [] { return DebuggerWindow() != nullptr; });
    host.Destroy();
    host.IsGone();
}

} // namespace

const std::vector<Check>& LifeCycleChecks()
{
    static const std::vector<Check> checks{
        {"before-create", "answers and destroy before create do no harm", BeforeCreate},
        {"open-and-close", "the list is asked for, and released when it closes", OpenAndClose},
        {"record-may-go", "the host's record may go after create", RecordMayGo},
        {"again-and-again", "it opens and closes five times", AgainAndAgain},
        {"destroyed-twice", "a second destroy does no harm", DestroyedTwice},
        {"closed-by-operator", "the close box releases everything", ClosedByTheOperator},
        {"destroyed-inside", "a request callback may destroy it", DestroyedInsideACallback},
        {"null-callbacks", "callbacks that are null are not called", NullCallbacks},
        {"path-without-zero", "a path of 256 bytes ends with its field", PathWithoutZero},
        {"path-no-text", "a path that is no text is a missing file only", PathThatIsNoText},
        {"wx-open-and-close",
         "in a wxWidgets host the list is asked for and released",
         OpenAndClose,
         HostKind::Wx},
        {"wx-closed-by-operator",
         "in a wxWidgets host the close box releases everything",
         ClosedByTheOperator,
         HostKind::Wx},
        {"wx-destroyed-inside",
         "in a wxWidgets host a request callback may destroy it",
         DestroyedInsideACallback,
         HostKind::Wx},
    };
    return checks;
}

} // namespace plccheck
