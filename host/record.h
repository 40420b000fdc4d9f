#pragma once

#include "plcdebug_host.h"
#include "steps.h"

#include <optional>
#include <string>
#include <vector>

// Records of the host boundary in the terms of host and PLC. No windows. Any thread.

namespace plchost {

/// The operand name of a read or write request.
std::string OperandOf(const CMD_DATA& request);

/// The steps that a program-state request subscribes; nothing when it asks to stop.
std::optional<plc::StepRange> RequestedSteps(const CMD_DATA& request);

/// Whether one answer can hold the states of these steps, of which there has to be one.
bool IsAnswerable(const plc::StepRange& steps);

/// @param states one for each step of the range, at most PLC_MAX_STEPS.
CMD_DATA
MakeProgramStateAnswer(const plc::StepRange& steps, const std::vector<plc::StepState>& states);

/// The steps that a program-state answer carries.
plc::StepRange AnsweredSteps(const CMD_DATA& answer);

/// The states of a program-state answer; none when its length word does not cover them.
std::vector<plc::StepState> AnsweredStates(const CMD_DATA& answer);

} // namespace plchost
