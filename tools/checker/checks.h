#pragma once

#include "trial_host.h"

#include <vector>

// The checks: what a host may do and what the library then has to do. GUI thread.

namespace plccheck {

/// Runs in a process of its own.
struct Check
{
    const char* name;
    const char* sentence; ///< What holds when nothing is wrong.
    void (*run)(TrialHost& host);
};

/// Opening and closing, in every order.
const std::vector<Check>& LifeCycleChecks();

/// Answers of all kinds.
const std::vector<Check>& AnswerChecks();

} // namespace plccheck
