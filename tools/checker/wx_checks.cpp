#include "checks.h"
#include "wx_host.h"

namespace plccheck {

namespace {

/// The debugger's window is a child of the host's, and goes as by a destroy.
void GoesWithTheWindow(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("destroys its own window");
    host.Program()->DestroyWindow();
    if (!host.IsGone()) {
        return;
    }
    host.Destroy();
    host.Reports().Step("opens its own window again");
    host.Program()->OpenWindow();
    if (host.Open()) {
        host.Destroy();
        host.IsGone();
    }
}

} // namespace

const std::vector<Check>& WxChecks()
{
    static const std::vector<Check> checks{
        {"wx-window-goes",
         "the host's own window takes the debugger along",
         GoesWithTheWindow,
         HostKind::Wx},
    };
    return checks;
}

} // namespace plccheck
