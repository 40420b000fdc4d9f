#pragma once

#include "answers.h"
#include "port.h"
#include "record.h"
#include "recording.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

// Serves the debugger from a recording instead of a PLC. No windows. GUI thread.

namespace plchost {

/// The debugger asks for what it likes, under keys of its own: recorded answers belong to operands
/// and steps. Each is given at its time to all who have asked for its operand by then; who asks
/// later gets the last one at once.
class Player : public RequestHandler
{
public:
    using Clock = std::chrono::steady_clock;
    using Log = std::function<void(const std::string& message)>;

    /// @param answers outlives the player.
    /// @param speed 1 for the original one.
    /// @param log takes what the recording cannot serve.
    Player(AnswerSink& answers, Recording recording, double speed, Log log);

    void Request(const CMD_DATA& request) override;

    /// Ends all subscriptions: the debugger is gone. The time stands until the next Advance().
    void Forget();

    /// Gives the answers that are due. The first call starts the time.
    void Advance(Clock::time_point now);

    /// Plays from the beginning again.
    void Rewind();

    /// How far it has been played; stays at Length() at the end.
    std::chrono::microseconds Position() const;
    std::chrono::microseconds Length() const;

private:
    struct Variable
    {
        std::string operand;
        bool due = true; ///< The last answer has not been given yet.
    };

    struct Steps
    {
        plc::StepRange range;
        bool due = true; ///< The last states have not been given yet.
    };

    void OnRead(const CMD_DATA& request);
    void OnProgramState(const CMD_DATA& request);
    void Play(const RecordedEvent& event);
    void PlayRequest(const CMD_DATA& request);
    void PlayReadAnswer(const CMD_DATA& answer);
    void PlayStates(const CMD_DATA& answer);
    void AnswerVariable(std::uint16_t key, Variable& variable);
    void AnswerSteps();

    AnswerSink& m_answers;
    const Recording m_recording;
    const std::set<std::string> m_operands; ///< That the recording has been asked for.
    const double m_speed;
    const Log m_log;

    // What the recorded host had said up to now.
    std::optional<Clock::time_point> m_advanced; ///< Last look at the clock.
    std::chrono::duration<double, std::micro> m_position{0};
    std::size_t m_next = 0;                          ///< The event to be played next.
    std::map<std::uint16_t, std::string> m_recorded; ///< Operands by recorded key.
    std::optional<plc::StepRange> m_recordedSteps;
    std::map<std::string, CMD_DATA> m_values;        ///< Last answers by operand.
    std::map<std::int64_t, plc::StepState> m_states; ///< Last states by step.

    // What the debugger asks for now.
    std::map<std::uint16_t, Variable> m_variables; ///< By key.
    std::optional<Steps> m_steps;
};

} // namespace plchost
