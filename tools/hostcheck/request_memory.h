#pragma once

#include "plcdebug_records.h"

#include <cstddef>

// Memory in which a host is handed its requests: it can be read while the callback runs and only
// as far as the record goes. One object in a process, on the GUI thread.

namespace hostcheck {

class RequestMemory
{
public:
    /// Catches SIGSEGV for what lies in its own memory; everything else goes to the handler that
    /// was there before.
    RequestMemory();

    /// Puts a request where the host reads it. Without memory it is the caller's record itself.
    const CMD_DATA* Open(const CMD_DATA& request);

    /// The callback has returned.
    void Shut(const CMD_DATA* request) const;

    /// Whether a request was read after its callback had returned, since the last call.
    /// [any-thread]
    static bool WasKept();

    /// Whether something was read behind a request since the last call. [any-thread]
    static bool WasOverread();

private:
    std::size_t m_page;
    char* m_pages = nullptr; ///< For each request a page, and one behind it that is never open.
    std::size_t m_next = 0;
};

} // namespace hostcheck
