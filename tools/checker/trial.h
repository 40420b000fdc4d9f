#pragma once

#include "checks.h"

#include <chrono>
#include <string>
#include <vector>

// One check in a process of its own, so that a crash or a standstill of the library is a finding
// and no more. Any thread.

namespace plccheck {

/// Runs this program anew for one check.
/// @param check its name.
/// @param limit after which the process is ended.
/// @param through program that runs this one, such as an emulator; empty: none.
/// @return what was wrong; nothing when all was well.
std::vector<std::string> RunTrial(
    const std::string& check,
    const std::string& library,
    std::chrono::seconds limit,
    const std::string& through);

/// The other side: runs the check in this process.
/// @param reportFile descriptor that RunTrial() reads.
/// @return the process's exit status.
int RunCheckHere(const Check& check, const std::string& library, int reportFile);

} // namespace plccheck
