#pragma once

#include "answers.h"
#include "machine_link.h"
#include "port.h"
#include "record.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

// Serves the debugger's requests from the machine behind a link: subscriptions in, answers out. No
// windows.

namespace plchost {

using Log = std::function<void(const std::string& message)>;

/// Where what has to be said goes, on any thread.
struct MachineLog
{
    Log tell; ///< To who reads standard error.
    Log warn; ///< To the operator too: what he wanted has not been done.
};

/// Requests come on the GUI thread. Answers leave on the thread of the link's source.
class Bridge : public RequestHandler, private plclink::Client
{
public:
    /// @param answers, link outlive the bridge.
    /// @param log is told what could not be served, and warned of what has not been written.
    Bridge(AnswerSink& answers, plclink::MachineLink& link, MachineLog log);
    ~Bridge() override;
    Bridge(const Bridge&) = delete;
    Bridge(Bridge&&) = delete;
    Bridge& operator=(const Bridge&) = delete;
    Bridge& operator=(Bridge&&) = delete;

    /// [gui-thread]
    void Request(const CMD_DATA& request) override;

    /// Ends all subscriptions: the debugger is gone. What is still to be written is written.
    /// [gui-thread]
    void Forget();

private:
    /// An operand that the debugger watches under a key.
    class Variable : public plclink::Watcher
    {
    public:
        Variable(Bridge& bridge, std::uint16_t key, std::string operand)
            : m_bridge(bridge), m_key(key), m_operand(std::move(operand))
        {
        }

        /// From now on each reading is answered, not only the first one. [gui-thread]
        void Serve() { m_served = true; }

        bool OnReading(const plclink::Reading& reading) override;
        void OnUnreadable(const std::string& reason) override;

    private:
        Bridge& m_bridge;
        const std::uint16_t m_key;
        const std::string m_operand;
        std::atomic<bool> m_served{false};
        bool m_answered = false;
    };

    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) override;
    void OnRead(const CMD_DATA& request);
    void OnWrite(const CMD_DATA& request);
    void OnDelete(const CMD_DATA& request);
    void OnProgramState(const CMD_DATA& request);
    void Release(std::uint16_t key);

    AnswerSink& m_answers;
    plclink::MachineLink& m_link;
    const MachineLog m_log;
    std::map<std::uint16_t, Variable> m_variables; ///< By key; GUI thread.
};

} // namespace plchost
