#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

// Waiting for facts, never for a time. GUI thread.

/// Runs the main context until @p condition holds.
/// @param what the awaited fact in words, for the message when it does not come about.
/// @return a failure naming @p what when a generous limit has passed; else success.
testing::AssertionResult WaitFor(const std::string& what, const std::function<bool()>& condition);

/// Runs the main context until three further ticks of the debugger's timer have surely passed: for
/// facts of the kind "sends nothing".
void WaitThreeTicks();

/// Runs whatever the main context has ready, without waiting for more.
void RunPending();
