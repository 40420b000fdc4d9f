#pragma once

#include <chrono>
#include <string>

// The time of day, for a person and for a program. Any thread.

namespace base {

/// "2026-11-22T19:30:01.234+0100", of the zone of this machine.
std::string TimeOfDay(std::chrono::system_clock::time_point time);

} // namespace base
