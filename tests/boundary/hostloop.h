#pragma once

#include <functional>
#include <future>
#include <type_traits>

// The host program around the tests. Its main loop runs on the main thread, as in every host; the
// tests run beside it on a thread of their own, as the operator sits beside the machine. So they
// see dialogs from outside, and whether the loop goes on.

/// Sets the toolkit up and runs its main loop on this thread, and @p tests beside it.
/// @return what @p tests returned; the loop ends with them.
int RunHost(int argc, char** argv, int (*tests)());

/// @return true when the host's main loop has ended although the tests go on. Any thread.
bool HostLoopHasEnded();

/// @return true in the wxWidgets host: the application object is not the plug-in's.
bool HostOwnsTheToolkit();

/// Runs @p work from the loop that is running, be it a dialog's, and does not wait for it.
void PostToGui(std::function<void()> work);

/// As PostToGui(), and waits until @p work has returned. On the GUI thread it runs at once.
void RunOnGui(const std::function<void()>& work);

/// Runs @p work on the GUI thread.
/// @return its result; what it throws is thrown here.
template <typename Work> std::invoke_result_t<Work> OnGui(Work work)
{
    std::packaged_task<std::invoke_result_t<Work>()> task(std::move(work));
    auto result = task.get_future();
    RunOnGui([&task] { task(); });
    return result.get();
}

/// Looks at @p condition on the GUI thread until it holds.
/// @return false when a generous limit has passed.
bool HoldsOnGui(const std::function<bool()>& condition);
