#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// A program that runs beside the test and ends with this, or with the thread that has started it.
class Child
{
public:
    /// @param command its words; the program is looked for in the path.
    /// @param output which of its outputs is read: 1 or 2.
    explicit Child(const std::vector<std::string>& command, int output = 1);
    ~Child();
    Child(const Child&) = delete;
    Child(Child&&) = delete;
    Child& operator=(const Child&) = delete;
    Child& operator=(Child&&) = delete;

    /// Waits for a line that has this in it.
    /// @return the line; empty when the program has ended without it.
    std::string WaitForLine(const std::string& part);

    /// Waits until the program ends.
    /// @return all that it has said and was not read yet, when its status is 0; else a failure's
    ///         text.
    std::string WaitForEnd();

    void Signal(int signal) const;

    /// Ends it at once.
    void Kill();

    /// Its number at the system.
    pid_t Id() const { return m_process; }

private:
    pid_t m_process = -1;
    int m_output = -1;
    std::string m_said;
};
