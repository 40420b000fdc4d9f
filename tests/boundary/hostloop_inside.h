#pragma once

#include <functional>

// What the kinds of host share. GUI thread.

/// Runs @p loop on this thread, the GUI thread from now on, and @p tests on another.
/// @param loop returns after @p quitLoop was called.
/// @param quitLoop is run from the loop when the tests are over.
/// @return what @p tests returned.
int RunTestsBeside(int (*tests)(), const std::function<void()>& loop, void (*quitLoop)());
