#pragma once

#include "machine_list.h"
#include "plcwatch_options.h"
#include "plcwatch_session.h"

#include <string>
#include <vector>

// Who is there: the machines of a plant, printed once. The thread of main().

namespace plcwatch {

/// Without line end: name, state, tab-separated.
std::string MachineLine(const plcremote::ListedMachine& machine);

/// A JSON text.
std::string MachineJson(const plcremote::ListedMachine& machine);

/// @return the program's exit status.
int ListMachines(const Options& options, const Surroundings& around);

} // namespace plcwatch
