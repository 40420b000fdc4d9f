#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

// Waiting for facts, never for a time. GUI thread.

/// Far beyond what a slow machine needs; only a failing test ever waits that long.
constexpr std::chrono::seconds waitLimit{WAIT_LIMIT_SECONDS};

/// Runs the main context until @p condition holds.
/// @param what the awaited fact in words, for the message when it does not come about.
/// @return a failure naming @p what when a generous limit has passed; else success.
testing::AssertionResult WaitFor(const std::string& what, const std::function<bool()>& condition);

/// Runs the main context until three further ticks of the debugger's timer have surely passed: for
/// facts of the kind "sends nothing".
void WaitThreeTicks();

/// Runs whatever the main context has ready, without waiting for more.
void RunPending();
