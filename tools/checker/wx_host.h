#pragma once

#include "result.h"

#include <functional>
#include <string>

// A host that is a wxWidgets program. It lies in a library of its own, which is loaded for the
// checks in such a host only: a program with wxWidgets in it is no plain GTK host any more. GUI
// thread.

namespace plccheck {

/// The name of its windows as widgets, which tells them from the debugger's.
constexpr const char* wxHostWindow = "plcdebug-check-host";

/// The program while it runs: an application object, a window, a main loop.
class WxHost
{
public:
    WxHost() = default;
    virtual ~WxHost() = default;
    WxHost(const WxHost&) = delete;
    WxHost(WxHost&&) = delete;
    WxHost& operator=(const WxHost&) = delete;
    WxHost& operator=(WxHost&&) = delete;

    /// Shows the window, which then is the application's top window.
    virtual void OpenWindow() = 0;

    /// Destroys the window, as the toolkit does it: soon.
    virtual void DestroyWindow() = 0;

    /// @return what of the program is no longer its own; empty when all is as it has to be.
    virtual std::string Loss() const = 0;
};

/// Runs a wxWidgets program, and @p inside once from its main loop, with the window open.
/// @return whether the main loop ran until the program itself ended it.
using RunWxHost = bool (*)(const std::function<void(WxHost& host)>& inside);

/// @return the library's function, or why there is none.
base::Result<RunWxHost> LoadWxHost();

} // namespace plccheck
