#pragma once

#include "child.h"

#include <csignal>
#include <string>

/// A bad network between a program and a server on this machine.
class Proxy
{
public:
    /// @param port of the server.
    explicit Proxy(const std::string& port)
        : m_child({"/usr/bin/python3", REMOTE_TESTS "/proxy.py", port})
    {
        const std::string ready = m_child.WaitForLine("ready ");
        m_port = ready.substr(ready.find(' ') + 1);
    }

    const std::string& Port() const { return m_port; }

    /// Swallows everything from now on, or passes it again.
    void Swallow() { Signal(SIGUSR1, ""); }

    void Hold() { Signal(SIGUSR2, "holds"); }

    /// Holds what goes to the server, and passes what comes from there.
    void HoldToServer() { Signal(SIGWINCH, "holds"); }

    void LetGoToServer() { Signal(SIGWINCH, "passes"); }

    /// Passes on what it has held.
    void LetGo() { Signal(SIGUSR2, "passes"); }

    void Cut() { Signal(SIGHUP, "cut"); }

private:
    void Signal(int signal, const std::string& answer)
    {
        m_child.Signal(signal);
        m_child.WaitForLine(answer);
    }

    Child m_child;
    std::string m_port;
};
