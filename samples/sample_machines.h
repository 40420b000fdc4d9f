#pragma once

#include "process.h"

#include <memory>
#include <string_view>
#include <vector>

// The machines to try, by name. Values. Any thread.

namespace samples {

/// A machine to try: the statement list NAME/NAME.il, its process, and what an operator does so
/// that it works without him.
struct SampleMachine
{
    std::string_view name;
    std::unique_ptr<plc::Process> (*makeProcess)();
    std::string_view startButton; ///< To be pressed at the start; empty: none.
    std::string_view startSwitch; ///< To be switched on at the start; empty: none.
};

/// By name.
const std::vector<SampleMachine>& SampleMachines();

/// @return null when there is no machine of that name.
const SampleMachine* FindSampleMachine(std::string_view name);

} // namespace samples
