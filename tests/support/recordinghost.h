#pragma once

#include "plcdebug_host.h"

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

// The host's side of the boundary for a test: every request is kept, none is answered by itself.

/// One request as the host got it.
struct RecordedRequest
{
    enum class Callback
    {
        Read,
        Write,
        PrgState,
        Delete
    };

    Callback callback; ///< The one through which it came.
    CMD_DATA record;
    std::thread::id thread;

    /// @return the request in words: "read 3 MW20", "write MW20=-5", "start 3", "release 3",
    ///         "delete 3 arg 7", "state 0..9 count 10", "stop". "(via read)" and so on follows when
    ///         it came through another callback than its command word belongs to.
    std::string InWords() const;
};

/// Hands out a PLC_DBG_INIT and keeps what comes through it. One at a time in a process.
class RecordingHost
{
public:
    /// @param pathPrefix the record's path prefix.
    explicit RecordingHost(const std::string& pathPrefix = "");
    ~RecordingHost();
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost(RecordingHost&&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;
    RecordingHost& operator=(RecordingHost&&) = delete;

    PLC_DBG_INIT init{};                   ///< What the plug-in gets; a test may change it before.
    std::vector<RecordedRequest> requests; ///< In the order in which they came.
    int tallFrameCalls = 0;
    std::int32_t tallFrame = 0; ///< What the tall-frame callback answers.
    /// Runs inside each request callback, after the request was kept; may be empty.
    std::function<void(const RecordedRequest&)> reaction;

    /// @return all requests in words, oldest first.
    std::vector<std::string> InWords() const;

    /// @return all requests in words, oldest first, and forgets them.
    std::vector<std::string> TakeInWords();
};
