#pragma once

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

// What may keep a program from writing a file.

/// The disk takes no more than some bytes of a file while this lives.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit full = {bytes, m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk(FullDisk&&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    FullDisk& operator=(FullDisk&&) = delete;

    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, SIG_DFL);
    }

private:
    rlimit m_old = {};
};

/// A root user passes every file permission: the tests of permissions run as nobody.
class Unprivileged
{
public:
    Unprivileged()
    {
        if (m_wasRoot && ::setresuid(nobody, nobody, 0) != 0) {
            throw std::runtime_error("cannot give up the root user's rights");
        }
    }

    Unprivileged(const Unprivileged&) = delete;
    Unprivileged(Unprivileged&&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    Unprivileged& operator=(Unprivileged&&) = delete;

    ~Unprivileged()
    {
        if (m_wasRoot && ::setresuid(0, 0, 0) != 0) {
            std::abort();
        }
    }

private:
    static constexpr uid_t nobody = 65534;
    bool m_wasRoot = ::geteuid() == 0;
};
