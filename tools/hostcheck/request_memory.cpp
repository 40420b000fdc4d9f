#include "request_memory.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace hostcheck {

namespace {

/// Requests whose memory is kept shut before it serves again.
constexpr std::size_t requests = 256;

// What the signal handler needs; it is set before the handler.
char* pagesBegin = nullptr;
char* pagesEnd = nullptr;
std::size_t pageSize = 0;
struct sigaction formerAction;
std::atomic<bool> kept{false};
std::atomic<bool> overread{false};

void PassOn(int signal, siginfo_t* info, void* context)
{
    if ((formerAction.sa_flags & SA_SIGINFO) != 0) {
        formerAction.sa_sigaction(signal, info, context);
    } else if (formerAction.sa_handler != SIG_DFL && formerAction.sa_handler != SIG_IGN) {
        formerAction.sa_handler(signal);
    } else {
        sigaction(signal, &formerAction, nullptr); // and what failed fails again
    }
}

/// Opens the page, so that the host goes on and can be judged further.
void OnViolation(int signal, siginfo_t* info, void* context)
{
    char* const place = static_cast<char*>(info->si_addr);
    if (place < pagesBegin || place >= pagesEnd) {
        PassOn(signal, info, context);
        return;
    }
    const std::size_t page = static_cast<std::size_t>(place - pagesBegin) / pageSize;
    (page % 2 == 0 ? kept : overread) = true;
    mprotect(pagesBegin + page * pageSize, pageSize, PROT_READ | PROT_WRITE);
}

} // namespace

RequestMemory::RequestMemory() : m_page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
{
    const std::size_t size = 2 * requests * m_page;
    void* const pages = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        return;
    }
    m_pages = static_cast<char*>(pages);
    pageSize = m_page;
    pagesBegin = m_pages;
    pagesEnd = pagesBegin + size;
    struct sigaction action = {};
    action.sa_sigaction = OnViolation;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    sigaction(SIGSEGV, &action, &formerAction);
}

const CMD_DATA* RequestMemory::Open(const CMD_DATA& request)
{
    if (m_pages == nullptr) {
        return &request;
    }
    char* const page = m_pages + 2 * m_page * (m_next++ % requests);
    mprotect(page, m_page, PROT_READ | PROT_WRITE);
    char* const place = page + m_page - sizeof request;
    std::memcpy(place, &request, sizeof request);
    mprotect(page + m_page, m_page, PROT_NONE);
    return reinterpret_cast<const CMD_DATA*>(place);
}

void RequestMemory::Shut(const CMD_DATA* request) const
{
    if (m_pages == nullptr) {
        return;
    }
    const auto offset = static_cast<std::size_t>(reinterpret_cast<const char*>(request) - m_pages);
    mprotect(m_pages + offset / m_page * m_page, m_page, PROT_NONE);
}

bool RequestMemory::WasKept()
{
    return kept.exchange(false);
}

bool RequestMemory::WasOverread()
{
    return overread.exchange(false);
}

} // namespace hostcheck
