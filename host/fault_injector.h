#pragma once

#include "answers.h"
#include "plcdebug_host.h"

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

// A host that misbehaves on purpose, in named ways that the debugger must survive. No windows.
// The thread that runs the cycles.

namespace plchost {

enum class Fault
{
    LateAnswer,       ///< Every answer comes lateTicks cycles late.
    WrongKey,         ///< An answer that nobody asked for precedes every right one.
    Length65535,      ///< Every answer claims to be 65535 bytes long.
    NullAnswer,       ///< A null pointer precedes every answer.
    AnswerAfterClose, ///< The last answer is repeated for ever, also when its debugger is gone.
    Flood             ///< Every answer comes floodCount times.
};

struct NamedFault
{
    const char* name;
    Fault fault;
    const char* description;
};

constexpr std::uint64_t lateTicks = 200;
constexpr std::uint64_t repeatTicks = 10; ///< Cycles between two repetitions of AnswerAfterClose.
constexpr int floodCount = 200;

/// All faults by the names under which the command line knows them.
const std::array<NamedFault, 6>& NamedFaults();

std::optional<Fault> FaultByName(std::string_view name);

/// Passes answers on, spoiled by one fault, or as they are.
class FaultInjector : public AnswerSink
{
public:
    /// @param next outlives this.
    FaultInjector(AnswerSink& next, std::optional<Fault> fault) : m_next(next), m_fault(fault) {}

    bool Answer(AnswerKind kind, const CMD_DATA* answer) override;

    /// To be called once in each cycle: delivers what is late or repeated.
    void Tick();

private:
    struct Kept
    {
        AnswerKind kind;
        CMD_DATA record;
        std::uint64_t due; ///< Tick at which it goes out.
    };

    bool Spoil(AnswerKind kind, const CMD_DATA& answer);

    AnswerSink& m_next;
    const std::optional<Fault> m_fault;
    std::uint64_t m_ticks = 0;
    std::deque<Kept> m_kept;
};

} // namespace plchost
