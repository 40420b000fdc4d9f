#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

// What is found about a host, and how it is told. Values; the owner's lock guards a report.

namespace hostcheck {

enum class Finding : std::uint8_t
{
    ToolkitNotSetUp,
    NoBlock,
    CreateOnOtherThread,
    DestroyOnOtherThread,
    CreateTwice,
    CreateInside,
    NeverDestroyed,
    AnswerBeforeCreate,
    AnswerDuringDestroy,
    AnswerAfterDestroy,
    CallbackSlow,
    CallbackThrows,
    RequestKept,
    RequestOverread,
    NullAnswer,
    WrongLength,
    KeyUnknown,
    KeyReleased,
    StepsUnknown,
    StepsReleased,
    OfLastLife,
    BitNot0Or1,
    ValueTooWide,
    StateNot0Or1,
    NothingAnswered,
    NotAnsweredAgain,
    ListChangeIgnored,
    ValueLate,
    ValueStops
};

constexpr int findingCount = static_cast<int>(Finding::ValueStops) + 1;

/// The name that the report and its documentation call a finding by.
const char* NameOf(Finding finding);

/// Tells each finding when it is made for the first time, and counts the others.
class Report
{
public:
    using Print = std::function<void(const std::string& line)>;

    /// @param print takes a line without its end.
    explicit Report(Print print) : m_print(std::move(print)) {}

    /// @param words what the host has done, for its author.
    void Find(Finding finding, const std::string& words);

    void Say(const std::string& line) const { m_print(line); }

    bool IsClean() const { return m_times.empty(); }

    /// The lines of the findings so far, in their order.
    const std::vector<std::string>& Lines() const { return m_lines; }

    /// "2 findings: null-answer (3 times), wrong-length (once)".
    std::string Summary() const;

private:
    const Print m_print;
    std::map<Finding, int> m_times;
    std::vector<std::string> m_lines;
};

} // namespace hostcheck
