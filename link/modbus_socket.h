#pragma once

#include "result.h"

#include <atomic>
#include <chrono>
#include <string>
#include <vector>

// Waiting that another thread can end, and a socket connected with such waiting. Any thread.

namespace plclink {

/// Raised once, by any thread, and then for ever.
class StopSignal
{
public:
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal(StopSignal&&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    StopSignal& operator=(StopSignal&&) = delete;

    void Raise();

    bool IsRaised() const { return m_isRaised; }

    enum class Woken
    {
        Ready,
        TimeOut,
        Stopped
    };

    /// Waits until a file is ready.
    /// @param file its number, or -1 to wait for the time or the signal alone.
    /// @param events as of poll().
    Woken Wait(int file, short events, std::chrono::milliseconds time) const;

    /// The same without an end.
    Woken Wait(int file, short events) const;

private:
    Woken Poll(int file, short events, int time) const;

    const int m_event;
    std::atomic<bool> m_isRaised{false};
};

/// Connects with a host; its name is resolved each time.
/// @param timeout of each of the host's addresses.
/// @return the socket, which never blocks, or why there is none.
base::Result<int> ConnectTcp(
    const std::string& host,
    const std::string& port,
    std::chrono::milliseconds timeout,
    const StopSignal& stop);

} // namespace plclink
