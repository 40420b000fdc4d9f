#include "checks.h"
#include "record.h"
#include "shown.h"
#include "window.h"

#include <gdk/gdkkeysyms.h>

namespace plccheck {

namespace {

/// A value typed into the first row leaves as a write request.
void TypesAValue(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    AnswerAll(host, 1);
    StillPicture(host);
    host.Reports().Step("types a value");
    GiveKeyboard(DebuggerWindow());
    StillPicture(host);
    for (const int key : {GDK_KEY_Right, GDK_KEY_8, GDK_KEY_8, GDK_KEY_Return}) {
        Type(DebuggerWindow(), static_cast<unsigned>(key));
    }
    if (!host.Await("the write request", [&] { return !host.Writes().empty(); })) {
        return;
    }
    const CMD_DATA request = host.Writes().front();
    host.Require(
        plchost::OperandOf(request) == TrialHost::Operands().front() &&
            PlcWrittenValue(&request) == someValue,
        "88 typed for " + TrialHost::Operands().front() + " is asked for as " +
            std::to_string(PlcWrittenValue(&request)) + " for " + plchost::OperandOf(request));
    StillPicture(host);
    host.Require(host.Writes().size() == 1, "a typed value is written more than once");
    host.Destroy();
    host.IsGone();
}

/// The exit item hides the window and releases the variables; the debugger is still there.
void ChoosesExit(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    StillPicture(host);
    host.Reports().Step("chooses the exit item");
    if (!host.Require(ChooseExit(DebuggerWindow()), "the window has no menu") ||
        !host.Await("the window to go", [] { return DebuggerWindow() == nullptr; })) {
        return;
    }
    host.Await("the releases after the exit item", [&] { return host.Served().empty(); });
    AnswerKey(host, 0, 1);
    host.Destroy();
    if (host.IsGone() && host.Open()) {
        host.Destroy();
        host.IsGone();
    }
}

} // namespace

const std::vector<Check>& OperatorChecks()
{
    static const std::vector<Check> checks{
        {"value-typed", "a value typed is a write request", TypesAValue},
        {"exit-chosen", "the exit item hides the window until it is destroyed", ChoosesExit},
        {"wx-value-typed",
         "in a wxWidgets host a value typed is a write request",
         TypesAValue,
         HostKind::Wx},
        {"wx-exit-chosen",
         "in a wxWidgets host the exit item hides the debugger alone",
         ChoosesExit,
         HostKind::Wx},
    };
    return checks;
}

} // namespace plccheck
