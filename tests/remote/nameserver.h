#pragma once

/// A name server that does not answer the library of a connection, as long as this lives; everybody
/// else's names are resolved. When it goes, it says to who has waited that it has no answer.
class SilentNameServer
{
public:
    SilentNameServer();
    ~SilentNameServer();
    SilentNameServer(const SilentNameServer&) = delete;
    SilentNameServer(SilentNameServer&&) = delete;
    SilentNameServer& operator=(const SilentNameServer&) = delete;
    SilentNameServer& operator=(SilentNameServer&&) = delete;

    /// @return whether somebody has asked before a generous limit.
    static bool WaitForQuestion();
};
