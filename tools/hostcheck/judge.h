#pragma once

#include "asked.h"
#include "operand.h"
#include "plcdebug_records.h"
#include "report.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Judges what a host does at the boundary: calls, answers and their time. Time is counted in ticks
// of the host's main loop, which stands when the loop stands. Values; the owner's lock guards a
// judge.

namespace hostcheck {

/// The ticks that an answer which was under way may be late.
constexpr int graceTicks = 20;

/// The ticks within which a first value is to come.
constexpr int lateTicks = 20;

/// The ticks after which what is not answered is taken to be overlooked.
constexpr int overlookedTicks = 40;

/// The ticks after which a value that has come is to be told again.
constexpr int silenceTicks = 50;

class Judge
{
public:
    /// @param report outlives the judge.
    explicit Judge(Report& report) : m_report(report) {}

    // Calls of the exports, on the GUI thread.

    /// @return whether a window is to be opened.
    bool BeginCreate();
    void EndCreate();

    /// @return whether there is a window to be closed.
    bool BeginDestroy();
    void EndDestroy();

    /// A request that is about to be sent.
    void Asked(const CMD_DATA& request);

    void BeginCallback() { ++m_callbacks; }

    void EndCallback() { --m_callbacks; }

    /// The operator has closed the window.
    void Close() { m_isClosed = true; }

    void Tick();

    /// The program ends.
    void End();

    // Answers, on any thread.

    /// @param answer as many bytes as its length word says; null when the host gives none.
    /// @return 1 when it is taken, as the export tells.
    int AnswerReadVar(const CMD_DATA* answer);
    int AnswerProgState(const CMD_DATA* answer);

    bool IsOpen() const { return m_life == Life::Open; }

    /// Whether the window still asks for anything.
    bool IsAsking() const { return IsOpen() && !m_isClosed; }

    /// Whether a debugger was ever created.
    bool IsUsed() const { return m_lives > 0; }

    /// What is watched now: a line for each, with the last value.
    std::vector<std::string> Rows() const;

    /// What was asked for and how it was answered, in lines.
    std::vector<std::string> Figures() const;

private:
    enum class Life : std::uint8_t
    {
        Never,
        Creating,
        Open,
        Destroying,
        Destroyed
    };

    struct Variable
    {
        std::string operand;
        plc::Width width = plc::Width::Bit;
        int askedAt = 0;
        std::optional<int> releasedAt;
        std::optional<int> answeredAt; ///< Last.
        bool answeredEarly = false;    ///< While the debugger was created, for nothing.
        bool silenceTold = false;
        std::int32_t value = 0;
    };

    struct AskedSteps
    {
        Steps steps;
        int askedAt = 0;
        std::optional<int> releasedAt;
        bool answered = false;
        bool silenceTold = false;
    };

    bool IsTakenNow(const std::string& what);
    void JudgeRead(const CMD_DATA& answer);
    void JudgeValue(std::uint16_t key, Variable& variable, std::int32_t value);
    void JudgeFirst(const std::string& what, int askedAt);
    void JudgeSteps(const CMD_DATA& answer, const Steps& steps);
    void JudgeStates(const CMD_DATA& answer, const Steps& steps);
    void JudgeSilence(std::uint16_t key, Variable& variable);
    void JudgeSilence(AskedSteps& asked);
    void ReleaseSteps();

    Report& m_report;
    Life m_life = Life::Never;
    bool m_isClosed = false;
    int m_lives = 0;
    int m_callbacks = 0; ///< Of the host that have not returned yet.
    int m_now = 0;
    int m_destroyedAt = 0;
    int m_slowest = 0;                             ///< The longest time of a first value.
    std::map<std::uint16_t, Variable> m_variables; ///< Of this life, by key.
    std::map<std::uint16_t, Variable> m_former;    ///< Of the life before.
    std::vector<AskedSteps> m_steps;               ///< Of this life; the last one counts.
    std::vector<AskedSteps> m_formerSteps;
    std::map<std::string, bool> m_answered; ///< By operand, whether it ever was.
    bool m_stepsAsked = false;
    bool m_stepsAnswered = false;
};

} // namespace hostcheck
