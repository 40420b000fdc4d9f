#pragma once

#include "debuggertest.h"

#include <wx/app.h>

#include <functional>

/// A host that takes the debugger down from inside a callback.
class DestroyInside : public DebuggerTest
{
protected:
    using Callback = RecordedRequest::Callback;

    /// From now on the host acts inside the first callback of a kind.
    void ReactOnce(Callback callback, const std::function<void()>& act)
    {
        OnGui([this, callback, act] {
            host.reaction = [this, callback, act](const RecordedRequest& request) {
                if (request.callback == callback) {
                    const auto once = act;
                    host.reaction = nullptr;
                    once();
                }
            };
        });
    }

    void DestroyInCallback(Callback callback)
    {
        ReactOnce(callback, [this] { plugin.destroy(); });
    }

    /// @return whether the debugger has gone for good: window, dialogs, owned toolkit.
    testing::AssertionResult EverythingGoes()
    {
        return Await("everything gone", [this] {
            return Frame() == nullptr && watch.Innermost() == nullptr &&
                   (wxTheApp != nullptr) == HostOwnsTheToolkit();
        });
    }

    /// Opens the debugger once more and uses it.
    void ReopenAndUse()
    {
        UseList({"EB7/D"});
        ASSERT_TRUE(Open());
        ASSERT_TRUE(Requests({"read 0 EB7", "start 0"}));
        EXPECT_EQ(Answer(0, 5), 1);
        EXPECT_TRUE(Shows({"EB 7|5|T30"}));
    }
};
