#pragma once

#include "answers.h"
#include "loader.h"
#include "plcdebug_host.h"
#include "result.h"

#include <functional>
#include <mutex>
#include <string>

// The life of the debugger: opened and closed by the host, or closed by the operator himself.
// No windows of its own.

namespace plchost {

/// The last station of an answer: the exports of the library. Any thread.
class PluginAnswers : public AnswerSink
{
public:
    /// @param plugin outlives this.
    explicit PluginAnswers(const Plugin& plugin) : m_plugin(plugin) {}

    bool Answer(AnswerKind kind, const CMD_DATA* answer) override;

    /// Whether a debugger is there for them.
    bool AreTaken();

    /// Drops answers from now on, and waits for the one under way: nothing may be answered while
    /// the debugger is destroyed.
    void Shut();
    void Open();

private:
    const Plugin& m_plugin;
    std::mutex m_mutex; ///< Held while an export runs, so that Shut() waits for it.
    bool m_shut = false;
};

/// [gui-thread]
class DebuggerSession
{
public:
    /// @param plugin, answers outlive the session.
    /// @param anyWindow tells whether the debugger shows a window.
    /// @param onChange runs when IsOpen() has changed.
    DebuggerSession(
        const Plugin& plugin,
        PluginAnswers& answers,
        std::function<bool()> anyWindow,
        std::function<void()> onChange);

    /// Opens the debugger, if it is closed.
    /// @return why it did not open, if so; that the host has closed it meanwhile is no failure.
    base::Result<void> Open(PLC_DBG_INIT init);

    /// Closes the debugger, if it is open or about to open; may run a dialog that asks whether to
    /// save. Called again meanwhile, it ends that dialog.
    void Close();

    bool IsOpen() const { return m_open; }

    /// @return whether a call of the library is under way: it runs a dialog.
    bool IsBusy() const { return m_calls > 0; }

    /// To be called a few times each second: notices that the operator has closed the debugger,
    /// for which there is no callback.
    void Poll();

private:
    void Leave();

    const Plugin& m_plugin;
    PluginAnswers& m_answers;
    const std::function<bool()> m_anyWindow;
    const std::function<void()> m_onChange;
    bool m_open = false;
    int m_calls = 0; ///< Creates and destroys that have not returned yet.
    int m_pollsWithoutWindow = 0;
};

} // namespace plchost
