#pragma once

#include "checks.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

// One check in a process of its own, so that a crash or a standstill of the library is a finding
// and no more. Any thread.

namespace plccheck {

/// What all trials of a library have in common.
struct TrialTerms
{
    std::string library;
    std::chrono::seconds limit;        ///< After which the process of a check is ended.
    std::chrono::milliseconds slowest; ///< That a create or a destroy may take.
    std::string through;               ///< Program that runs the processes, such as an emulator;
                                       ///< empty: none.
};

/// What came of a check.
struct Outcome
{
    std::vector<std::string> findings; ///< What was wrong; nothing when all was well.
    std::vector<std::pair<std::string, int>>
        figures;          ///< What and how much; the same more than once.
    bool returned = true; ///< Within the limit.
};

/// Runs this program anew for one check.
/// @param check its name.
Outcome RunTrial(const std::string& check, const TrialTerms& terms);

/// The other side: runs the check in this process.
/// @param folder where it writes; RunTrial() makes and removes it.
/// @param reportFile descriptor that RunTrial() reads.
/// @return the process's exit status.
int RunCheckHere(
    const Check& check, const TrialTerms& terms, const std::string& folder, int reportFile);

} // namespace plccheck
