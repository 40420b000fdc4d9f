#pragma once

#include "machine_link.h"
#include "port.h"
#include "result.h"
#include "window.h"

#include <memory>
#include <string>

// What answers the debugger, as the host sees it. GUI thread.

namespace plchost {

/// A machine that runs, or a recording of one: serves the debugger and has a window.
class Machine
{
public:
    Machine() = default;
    virtual ~Machine() = default;
    Machine(const Machine&) = delete;
    Machine(Machine&&) = delete;
    Machine& operator=(const Machine&) = delete;
    Machine& operator=(Machine&&) = delete;

    virtual RequestHandler& Requests() = 0;

    /// For more clients than the debugger.
    virtual plclink::MachineLink& Link() = 0;

    /// The debugger has been opened, or is gone and its subscriptions end.
    virtual void OnDebugger(bool open) = 0;

    /// Whether the debugger can open on all there is to know; if not, it can soon.
    virtual bool IsReady() const { return true; }

    /// Brings the files that the debugger opens on up to date.
    /// @return what the operator has to know of them; the debugger opens all the same.
    virtual base::Result<void> PrepareDebugger(const std::string&) { return {}; }

    /// To be called once, when everything stands.
    virtual void Start() = 0;

    /// @return a window that this outlives.
    virtual std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) = 0;
};

} // namespace plchost
