#include "waitfor.h"

#include <glib.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds tick{100};
constexpr unsigned wakeUpMs = 10;

gboolean KeepAwake(gpointer /*unused*/)
{
    return G_SOURCE_CONTINUE;
}

/// Runs the main context until @p condition holds or @p limit has passed.
bool RunUntil(const std::function<bool()>& condition, Clock::duration limit)
{
    const Clock::time_point end = Clock::now() + limit;
    const guint awake = g_timeout_add(wakeUpMs, KeepAwake, nullptr);
    bool holds = condition();
    while (!holds && Clock::now() < end) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_remove(awake);
    return holds;
}

} // namespace

testing::AssertionResult WaitFor(const std::string& what, const std::function<bool()>& condition)
{
    if (RunUntil(condition, waitLimit)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "waited in vain for: " << what;
}

void WaitThreeTicks()
{
    // A timer that starts now fires after every tick that is due before it.
    RunUntil([] { return false; }, 3 * tick + tick / 2);
}

void RunPending()
{
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}
