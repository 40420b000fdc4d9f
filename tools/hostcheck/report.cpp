#include "report.h"

#include <array>

namespace hostcheck {

const char* NameOf(Finding finding)
{
    constexpr std::array<const char*, findingCount> names{
        "toolkit-not-set-up",
        "no-block",
        "create-on-other-thread",
        "destroy-on-other-thread",
        "create-twice",
        "create-inside",
        "never-destroyed",
        "answer-before-create",
        "answer-during-destroy",
        "answer-after-destroy",
        "callback-slow",
        "callback-throws",
        "request-kept",
        "request-overread",
        "null-answer",
        "wrong-length",
        "key-unknown",
        "key-released",
        "steps-unknown",
        "steps-released",
        "of-last-life",
        "bit-not-0-or-1",
        "value-too-wide",
        "state-not-0-or-1",
        "nothing-answered",
        "not-answered-again",
        "list-change-ignored",
        "value-late",
        "value-stops"};
    return names.at(static_cast<std::size_t>(finding));
}

void Report::Find(Finding finding, const std::string& words)
{
    if (++m_times[finding] == 1) {
        m_lines.push_back(std::string("WRONG  ") + NameOf(finding) + ": " + words);
        m_print(m_lines.back());
    }
}

std::string Report::Summary() const
{
    if (IsClean()) {
        return "nothing found";
    }
    std::string text =
        std::to_string(m_times.size()) + (m_times.size() == 1 ? " finding" : " findings");
    const char* separator = ": ";
    for (const auto& [finding, times] : m_times) {
        text += separator + std::string(NameOf(finding)) + " (" +
                (times == 1 ? "once" : std::to_string(times) + " times") + ")";
        separator = ", ";
    }
    return text;
}

} // namespace hostcheck
