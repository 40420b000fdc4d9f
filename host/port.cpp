#include "port.h"

#include <cstring>

namespace plchost {

void ThreadRule::Note(const char* callback)
{
    if (std::this_thread::get_id() == m_guiThread) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_kept) {
        m_kept = base::Failure{
            std::string("the callback ") + callback +
            " came on another thread than the GUI thread (a fault of the library)"};
    }
}

base::Result<void> ThreadRule::Check() const
{
    const std::lock_guard lock(m_mutex);
    return m_kept;
}

RequestPort* RequestPort::m_pCurrent = nullptr;

RequestPort::RequestPort(RequestHandler& handler, ThreadRule& threads, bool tallFrame)
    : m_handler(handler), m_threads(threads), m_tallFrame(tallFrame)
{
    m_pCurrent = this;
}

RequestPort::~RequestPort()
{
    m_pCurrent = nullptr;
}

PLC_DBG_INIT RequestPort::InitRecord(const std::string& pathPrefix) const
{
    PLC_DBG_INIT init{};
    std::strncpy(init.szPath, pathPrefix.c_str(), sizeof init.szPath - 1);
    init.pfnTallFrame = &OnTallFrame;
    init.pfnReadVarRequest = &OnReadVar;
    init.pfnWriteVarRequest = &OnWriteVar;
    init.pfnPrgStateRequest = &OnPrgState;
    init.pfnDeleteVarRequest = &OnDeleteVar;
    return init;
}

std::int32_t RequestPort::OnTallFrame()
{
    if (m_pCurrent == nullptr) {
        return 0;
    }
    m_pCurrent->m_threads.Note("pfnTallFrame");
    return m_pCurrent->m_tallFrame ? 1 : 0;
}

std::int32_t RequestPort::OnReadVar(const CMD_DATA* request)
{
    return Serve("pfnReadVarRequest", request);
}

std::int32_t RequestPort::OnWriteVar(const CMD_DATA* request)
{
    return Serve("pfnWriteVarRequest", request);
}

std::int32_t RequestPort::OnPrgState(const CMD_DATA* request)
{
    return Serve("pfnPrgStateRequest", request);
}

std::int32_t RequestPort::OnDeleteVar(const CMD_DATA* request)
{
    return Serve("pfnDeleteVarRequest", request);
}

std::int32_t RequestPort::Serve(const char* callback, const CMD_DATA* request)
{
    if (m_pCurrent == nullptr || request == nullptr) {
        return 0;
    }
    m_pCurrent->m_threads.Note(callback);
    m_pCurrent->m_handler.Request(*request);
    return 1;
}

} // namespace plchost
