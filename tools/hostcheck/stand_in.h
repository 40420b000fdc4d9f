#pragma once

#include "judge.h"
#include "plcdebug_host.h"
#include "report.h"
#include "request_memory.h"
#include "script.h"
#include "window.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

// What stands in for the debugger: it sends the requests of its script to the host and lets the
// judge see all that the host does. It lives until the process ends.

namespace hostcheck {

class StandIn
{
public:
    static StandIn& Get();

    // The exports.

    /// [gui-thread]
    int Create(const PLC_DBG_INIT& init);

    /// [gui-thread]
    void Destroy();

    /// @param answer null, or a record as the host gives it.
    /// [any-thread]
    int AnswerReadVar(const unsigned char* answer);
    int AnswerProgState(const unsigned char* answer);

    /// The process ends: prints the summary.
    /// @return whether nothing was found.
    bool End();

private:
    StandIn();

    static gboolean OnTick(gpointer self);
    static gboolean OnLateTeardown(gpointer self);
    void Tick();
    bool Begin(const PLC_DBG_INIT& init);
    bool IsOnGuiThread();
    void Find(Finding finding, const std::string& words);
    void AskTallFrame();
    void Send(const Requests& requests);
    void Send(const CMD_DATA& request);
    template <typename Call> void CallHost(const Call& call);
    void Close();
    void LookAtMemory();
    std::string Text();

    std::mutex m_mutex; ///< Of all below but the window; never held while the host is called.
    Report m_report;
    Judge m_judge;
    Script m_script;
    PLC_DBG_INIT m_host{};
    std::thread::id m_guiThread;
    bool m_isTimed = false;
    std::atomic<int> m_ticks{0};
    std::atomic<int> m_life{
        0}; ///< Counts creates and destroys: what a former one still had to send is void.
    RequestMemory m_memory;
    std::unique_ptr<Window> m_window;
};

} // namespace hostcheck
