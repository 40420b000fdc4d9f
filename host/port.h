#pragma once

#include "plcdebug_host.h"
#include "result.h"

#include <mutex>
#include <string>
#include <thread>

// The callbacks that the host hands to the plug-in. They are plain C functions without user data,
// so this is the one place that knows the handler behind them. No windows.

namespace plchost {

/// Serves the requests of the debugger.
class RequestHandler
{
public:
    RequestHandler() = default;
    virtual ~RequestHandler() = default;
    RequestHandler(const RequestHandler&) = delete;
    RequestHandler(RequestHandler&&) = delete;
    RequestHandler& operator=(const RequestHandler&) = delete;
    RequestHandler& operator=(RequestHandler&&) = delete;

    /// @param request valid only during the call.
    virtual void Request(const CMD_DATA& request) = 0;
};

/// Notes whether every callback came on the GUI thread. Any thread.
class ThreadRule
{
public:
    explicit ThreadRule(std::thread::id guiThread) : m_guiThread(guiThread) {}

    /// @param callback the name of the callback that runs on the calling thread.
    void Note(const char* callback);
    /// @return a sentence about the first callback that broke the rule, if any.
    base::Result<void> Check() const;

private:
    const std::thread::id m_guiThread;
    mutable std::mutex m_mutex; ///< Guards m_kept.
    base::Result<void> m_kept;
};

/// Connects the callbacks with a handler for as long as it lives. One at a time.
class RequestPort
{
public:
    /// @param handler, threads both outlive the port.
    RequestPort(RequestHandler& handler, ThreadRule& threads, bool tallFrame);
    ~RequestPort();
    RequestPort(const RequestPort&) = delete;
    RequestPort(RequestPort&&) = delete;
    RequestPort& operator=(const RequestPort&) = delete;
    RequestPort& operator=(RequestPort&&) = delete;

    /// @return the record for ExportCreatePlcDebugger().
    /// @param pathPrefix shorter than PLC_PATH_SIZE.
    PLC_DBG_INIT InitRecord(const std::string& pathPrefix) const;

private:
    static std::int32_t OnTallFrame();
    static std::int32_t OnReadVar(const CMD_DATA* request);
    static std::int32_t OnWriteVar(const CMD_DATA* request);
    static std::int32_t OnPrgState(const CMD_DATA* request);
    static std::int32_t OnDeleteVar(const CMD_DATA* request);
    static std::int32_t Serve(const char* callback, const CMD_DATA* request);

    static RequestPort* m_pCurrent;

    RequestHandler& m_handler;
    ThreadRule& m_threads;
    const bool m_tallFrame;
};

} // namespace plchost
