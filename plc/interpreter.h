#pragma once

#include "cyclic_program.h"
#include "program.h"

#include <memory>

// Runs an assembled program. PLC thread.

namespace plc {

/// A cycle that goes on for longer stops the PLC.
constexpr std::chrono::milliseconds defaultCycleLimit{500};

/// @param program as Assemble() gives it, with a cyclic block.
/// @param limit looked at only in a cycle that jumps back or calls more than a thousand times.
std::unique_ptr<CyclicProgram>
MakeInterpreter(Program program, std::chrono::milliseconds limit = defaultCycleLimit);

} // namespace plc
