#pragma once

#include "bridge.h"
#include "fault_injector.h"
#include "ground.h"
#include "machine.h"
#include "port.h"
#include "publisher.h"
#include "recorder.h"
#include "session.h"
#include "timers.h"
#include "trace.h"
#include "warning.h"
#include "window.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

// Everything of the host, put together. GUI thread.

namespace plchost {

class Host
{
public:
    Host(const Options& options, Ground ground);

    /// Runs the main loop until the operator or the option --run ends it.
    /// @return the program's exit status.
    int Run();

private:
    std::unique_ptr<Recorder> MakeRecorder() const;
    MachineLog MakeLog();
    std::unique_ptr<Machine> MakeMachine();
    void Publish();
    void OpenOrClose();
    void WhenReady(const std::function<void()>& open);
    bool OpenDebugger();
    base::Result<void> TryToOpen();
    void Report(const std::string& problem);
    void Begin();
    void BeginWithDebugger();
    void BeginRun();
    void CheckThreads();
    void CheckRecorder();
    void EndRun();
    void Quit();

    const Options m_options;
    Ground m_ground;
    int m_status = 0;
    bool m_isWaiting = false; ///< Until the machine is ready.
    bool m_violationTold = false;
    bool m_recorderProblemTold = false;

    Trace m_trace;
    PluginAnswers m_answers;
    TracedAnswers m_tracedAnswers;
    const std::unique_ptr<Recorder> m_recorder; ///< Null: nothing is recorded.
    RecordedAnswers m_recordedAnswers;
    FaultInjector m_faults;
    Warning m_warning;
    const std::unique_ptr<Machine> m_machine;        ///< Its thread uses what stands above.
    std::optional<plcremote::Publisher> m_publisher; ///< Its thread uses the machine's link.
    TracedRequests m_tracedRequests;
    RecordedRequests m_recordedRequests;
    ThreadRule m_threads;
    RequestPort m_port;
    const std::unique_ptr<HostWindow> m_window;
    DebuggerSession m_session;
    Timers m_timers;
};

} // namespace plchost
