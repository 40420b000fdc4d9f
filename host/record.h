#pragma once

#include "plcdebug_host.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Requests taken apart and answers put together: the only place in the host that knows at which
// byte of a record what stands. No windows. Any thread.

namespace plchost {

/// A request to write one operand.
struct WriteRequest
{
    std::string operand;
    std::int32_t value; ///< Sign-extended byte or word, double word, or bits of a single.
};

/// A run of program steps, both ends included.
struct StepRange
{
    std::int32_t first;
    std::int32_t last;
};

/// The live state of one program step.
struct StepState
{
    bool logicResult;
    std::int32_t value; ///< PLC_NO_VALUE when the step has none.
};

/// The most steps whose states fit one answer.
constexpr std::size_t maxStepsInAnswer = 98;

/// The operand name of a read request; ends with the record when it lacks its zero byte.
std::string ReadOperand(const CMD_DATA& request);

WriteRequest WriteOperand(const CMD_DATA& request);

/// PLC_DELETE_ARG_START, PLC_DELETE_ARG_RELEASE, or what else the record holds.
std::int16_t DeleteArgument(const CMD_DATA& request);

/// The steps that a program-state request subscribes; nothing when it asks to stop.
std::optional<StepRange> RequestedSteps(const CMD_DATA& request);

/// The number of steps in a range; 0 when it is reversed.
std::size_t CountSteps(StepRange steps);

CMD_DATA MakeReadAnswer(std::uint16_t key, std::int32_t value);

/// @param states one for each step of the range, at most maxStepsInAnswer.
CMD_DATA MakeProgramStateAnswer(StepRange steps, const std::vector<StepState>& states);

/// The steps that a program-state answer carries.
StepRange AnsweredSteps(const CMD_DATA& answer);

/// The value that a read answer carries.
std::int32_t AnsweredValue(const CMD_DATA& answer);

/// The states of a program-state answer, as many as its length word covers.
std::vector<StepState> AnsweredStates(const CMD_DATA& answer);

/// @return the same answer for other steps, for hosts that misbehave.
CMD_DATA WithSteps(CMD_DATA answer, StepRange steps);

} // namespace plchost
