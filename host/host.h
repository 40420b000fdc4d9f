#pragma once

#include "bridge.h"
#include "misbehave.h"
#include "options.h"
#include "plant.h"
#include "port.h"
#include "session.h"
#include "settings.h"
#include "trace.h"
#include "window.h"

#include <memory>
#include <string>

// Everything of the host, put together. GUI thread.

namespace plchost {

/// What has to be found, read and written before the window can open.
struct Ground
{
    Plugin plugin;
    ConfigFiles files;
    std::string dataFolder;
    std::string language;
    plc::Program program;
};

class Host
{
public:
    Host(const Options& options, Ground ground);

    /// Runs the main loop until the operator or the option --run ends it.
    /// @return the program's exit status.
    int Run();

private:
    void AfterCycle(plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle);
    std::unique_ptr<Plant> MakePlant();
    void PressStart();
    void OpenOrClose();
    bool OpenDebugger();
    void Begin();
    void CheckThreads();
    void EndRun();
    void Quit();

    const Options m_options;
    Ground m_ground;
    int m_status = 0;
    bool m_violationTold = false;

    Trace m_trace;
    PluginAnswers m_answers;
    TracedAnswers m_tracedAnswers;
    Misbehave m_misbehave;
    Bridge m_bridge;
    TracedRequests m_tracedRequests;
    ThreadRule m_threads;
    RequestPort m_port;
    std::unique_ptr<Plant> m_plant; ///< Its thread uses what stands above.
    HostWindow m_window;
    DebuggerSession m_session;
};

} // namespace plchost
