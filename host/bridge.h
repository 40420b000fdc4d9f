#pragma once

#include "answers.h"
#include "cyclic_program.h"
#include "image.h"
#include "port.h"
#include "record.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// Serves the debugger's requests from the running PLC: subscriptions in, answers out. No windows.

namespace plchost {

/// A value that does not change is answered again after this time.
constexpr std::chrono::milliseconds refreshTime{1000};

/// Program states that change are answered this far apart, as near as the cycle allows: the
/// debugger looks at its answers every 100 ms.
constexpr std::chrono::milliseconds stateTimeApart{50};

/// Program states that do not change are answered again after this time.
constexpr std::chrono::milliseconds stateRefreshTime{200};

/// Requests come on the GUI thread, cycles on the PLC thread. Answers leave on the PLC thread.
class Bridge : public RequestHandler
{
public:
    using Clock = std::chrono::steady_clock;
    using Log = std::function<void(const std::string& message)>;

    /// @param answers outlives the bridge.
    /// @param log takes what could not be served, on the GUI thread.
    Bridge(AnswerSink& answers, Log log) : m_answers(answers), m_log(std::move(log)) {}

    /// [gui-thread]
    void Request(const CMD_DATA& request) override;

    /// Ends all subscriptions: the debugger is gone. What is still to be written is written.
    /// [gui-thread]
    void Forget();

    /// Writes what was asked for, then answers what is due. To be called between two cycles.
    /// @param cycle counts the cycles of the program; it stands while the PLC stands.
    /// [PLC thread]
    void AfterCycle(
        plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now);

private:
    struct Variable
    {
        plc::Cell cell;
        bool served = false; ///< Answered on change and from time to time.
        bool due = true;     ///< Not answered yet.
        std::uint32_t value = 0;
        Clock::time_point answered;
    };

    struct Write
    {
        plc::Cell cell;
        std::uint32_t value;
    };

    struct Steps
    {
        explicit Steps(const plc::StepRange& steps) : range(steps) {}

        plc::StepRange range;
        bool due = true;         ///< Not answered yet.
        std::uint64_t cycle = 0; ///< Of the last answer, or in which recording began.
        Clock::time_point answered;
        std::vector<plc::StepState> states; ///< As last answered.
    };

    void OnRead(const CMD_DATA& request);
    void OnWrite(const CMD_DATA& request);
    void OnDelete(const CMD_DATA& request);
    void OnProgramState(const CMD_DATA& request);
    std::optional<plc::Cell> Find(const std::string& operand) const;
    void AnswerVariable(
        std::uint16_t key, Variable& variable, const plc::Image& image, Clock::time_point now);
    void AnswerSteps(plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now);

    AnswerSink& m_answers;
    const Log m_log;

    std::mutex m_mutex; ///< Guards what follows; held while answers go out, so that none comes
                        ///< after its release.
    std::map<std::uint16_t, Variable> m_variables; ///< By key.
    std::vector<Write> m_writes;
    std::optional<Steps> m_steps;
    bool m_stepsChanged = false;    ///< The program does not know yet what is watched.
    Clock::time_point m_afterCycle; ///< The last AfterCycle().
};

} // namespace plchost
