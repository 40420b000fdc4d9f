#pragma once

#include "trial_host.h"

#include <vector>

// The checks: what a host may do and what the library then has to do. GUI thread.

namespace plccheck {

/// The toolkit that the host is a program of. With wxWidgets the debugger joins what is running.
enum class HostKind
{
    Gtk,
    Wx
};

/// Runs in a process of its own.
struct Check
{
    const char* name;
    const char* sentence; ///< What holds when nothing is wrong.
    void (*run)(TrialHost& host);
    HostKind host = HostKind::Gtk;
};

/// First of all; when it finds something, the others have nothing to look at.
const Check& LoadCheck();

/// Opening and closing, in every order.
const std::vector<Check>& LifeCycleChecks();

/// Answers of all kinds.
const std::vector<Check>& AnswerChecks();

/// What the window shows for them.
const std::vector<Check>& ShownChecks();

/// What belongs to the host and has to stay as it is.
const std::vector<Check>& OwnershipChecks();

/// What the operator does.
const std::vector<Check>& OperatorChecks();

/// What only a wxWidgets host meets.
const std::vector<Check>& WxChecks();

} // namespace plccheck
