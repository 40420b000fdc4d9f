#pragma once

#include "asked.h"
#include "plcdebug_records.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// What the host is asked for, and when: a list of operands that changes, and steps. One script is
// for one life of the debugger, and keys begin at 0. Values; the owner's lock guards a script.

namespace hostcheck {

using Requests = std::vector<CMD_DATA>;

class Script
{
public:
    Script() = default;

    Script(std::vector<std::string> operands, std::vector<Steps> steps)
        : m_operands(std::move(operands)), m_steps(std::move(steps))
    {
    }

    /// What a window asks for while it opens: the first few operands only, so that answers for
    /// the keys of the last life are seen to be nobody's.
    Requests Open();

    /// What is asked for in the next tick.
    Requests Next();

    /// Releases everything.
    Requests Close();

    /// Whether all has been asked for and released once.
    bool IsThrough() const { return m_isThrough; }

private:
    void AskFor(Requests& requests, std::size_t operand);
    void AskForSteps(Requests& requests);
    void ExchangeEverySecond(Requests& requests);

    std::vector<std::string> m_operands;
    std::vector<Steps> m_steps;
    std::vector<std::pair<std::uint16_t, std::size_t>> m_asked; ///< Keys, and which operand.
    std::uint16_t m_nextKey = 0;
    std::size_t m_nextSteps = 0;
    bool m_stepsAsked = false;
    int m_tick = 0;
    bool m_isThrough = false;
};

} // namespace hostcheck
