#include "modbus_socket.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace plclink {

namespace {

/// Where a host can be reached.
struct Address
{
    sockaddr_storage storage{};
    socklen_t size = 0;
};

/// A name being resolved on a thread that nobody waits for longer than he wants.
struct Resolution
{
    Resolution() : done(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    ~Resolution() { ::close(done); }

    Resolution(const Resolution&) = delete;
    Resolution(Resolution&&) = delete;
    Resolution& operator=(const Resolution&) = delete;
    Resolution& operator=(Resolution&&) = delete;

    const int done; ///< Readable when the rest is written.
    std::vector<Address> addresses{};
    /// Of getaddrinfo(). Written last and read first: an event does not order the memory of
    /// threads.
    std::atomic<int> error{0};
};

void Signal(int event)
{
    const std::uint64_t one = 1;
    // Nothing that could be done about it, and nothing that can go wrong with a first one.
    [[maybe_unused]] const auto written = ::write(event, &one, sizeof one);
}

int LookUp(
    const std::string& host, const std::string& port, int flags, std::vector<Address>& addresses)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | flags;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &found);
    if (error != 0) {
        return error;
    }
    for (const addrinfo* info = found; info != nullptr; info = info->ai_next) {
        Address address;
        address.size = info->ai_addrlen;
        std::memcpy(&address.storage, info->ai_addr, info->ai_addrlen);
        addresses.push_back(address);
    }
    ::freeaddrinfo(found);
    return 0;
}

base::Result<std::vector<Address>>
Resolve(const std::string& host, const std::string& port, const StopSignal& stop)
{
    std::vector<Address> addresses;
    if (LookUp(host, port, AI_NUMERICHOST, addresses) == 0) {
        return addresses;
    }
    const auto resolution = std::make_shared<Resolution>();
    std::thread([resolution, host, port] {
        resolution->error = LookUp(host, port, 0, resolution->addresses);
        Signal(resolution->done);
    }).detach();
    if (stop.Wait(resolution->done, POLLIN) != StopSignal::Woken::Ready) {
        return base::Failure{"the link has ended"};
    }
    if (resolution->error != 0) {
        return base::Failure{
            "the name " + host + " is not resolved: " + ::gai_strerror(resolution->error)};
    }
    return resolution->addresses;
}

/// @return an open socket that is connecting, or connected already; else -1, with the reason in
///         errno.
int BeginToConnect(const Address& address)
{
    const int file =
        ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (file < 0) {
        return -1;
    }
    // The library waits by select(), which knows no higher number.
    if (file >= FD_SETSIZE) {
        ::close(file);
        errno = EMFILE;
        return -1;
    }
    const int one = 1;
    ::setsockopt(file, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    const auto* const name = reinterpret_cast<const sockaddr*>(&address.storage);
    if (::connect(file, name, address.size) != 0 && errno != EINPROGRESS) {
        const int error = errno;
        ::close(file);
        errno = error;
        return -1;
    }
    return file;
}

base::Result<int>
Connect(const Address& address, std::chrono::milliseconds timeout, const StopSignal& stop)
{
    const auto failure = [](int error) {
        return base::Failure{"not connected: " + std::generic_category().message(error)};
    };
    const int file = BeginToConnect(address);
    if (file < 0) {
        return failure(errno);
    }
    int error = ETIMEDOUT;
    if (stop.Wait(file, POLLOUT, timeout) == StopSignal::Woken::Ready) {
        socklen_t size = sizeof error;
        ::getsockopt(file, SOL_SOCKET, SO_ERROR, &error, &size);
    }
    if (error != 0) {
        ::close(file);
        return failure(error);
    }
    return file;
}

} // namespace

StopSignal::StopSignal() : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StopSignal::~StopSignal()
{
    ::close(m_event);
}

void StopSignal::Raise()
{
    m_isRaised = true;
    Signal(m_event);
}

StopSignal::Woken StopSignal::Wait(int file, short events, std::chrono::milliseconds time) const
{
    return Poll(file, events, static_cast<int>(time.count()));
}

StopSignal::Woken StopSignal::Wait(int file, short events) const
{
    return Poll(file, events, -1);
}

StopSignal::Woken StopSignal::Poll(int file, short events, int time) const
{
    std::array<pollfd, 2> files{{{m_event, POLLIN, 0}, {file, events, 0}}};
    int count = 0;
    do {
        count = ::poll(files.data(), files.size(), time);
    } while (count < 0 && errno == EINTR);
    if (m_isRaised) {
        return Woken::Stopped;
    }
    return count > 0 ? Woken::Ready : Woken::TimeOut;
}

base::Result<int> ConnectTcp(
    const std::string& host,
    const std::string& port,
    std::chrono::milliseconds timeout,
    const StopSignal& stop)
{
    const auto addresses = Resolve(host, port, stop);
    if (!addresses) {
        return base::Failure{addresses.Message()};
    }
    base::Result<int> connected = base::Failure{"not connected: the host has no address"};
    for (const Address& address : *addresses) {
        connected = Connect(address, timeout, stop);
        if (connected || stop.IsRaised()) {
            break;
        }
    }
    return connected;
}

} // namespace plclink
