#include "child.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

Child::Child(const std::vector<std::string>& command, int output)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;
    }
    // A program that says much does not wait for somebody who reads it.
    constexpr int roomy = 1 << 20;
    ::fcntl(ends[1], F_SETPIPE_SZ, roomy);
    // A test that is killed has nobody to end the program for it.
    std::vector<std::string> withTest{"setpriv", "--pdeathsig", "KILL"};
    withTest.insert(withTest.end(), command.begin(), command.end());
    std::vector<char*> words;
    words.reserve(withTest.size() + 1);
    for (std::string& word : withTest) {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], output);
    if (::posix_spawnp(&m_process, words[0], &actions, nullptr, words.data(), environ) != 0) {
        m_process = -1;
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    m_output = ends[0];
}

Child::~Child()
{
    Kill();
    ::close(m_output);
}

std::string Child::WaitForLine(const std::string& part)
{
    for (;;) {
        const auto end = m_said.find('\n');
        if (end != std::string::npos) {
            std::string line = m_said.substr(0, end);
            m_said.erase(0, end + 1);
            if (line.find(part) != std::string::npos) {
                return line;
            }
            continue;
        }
        std::array<char, 1000> buffer{};
        const auto size = ::read(m_output, buffer.data(), buffer.size());
        if (size <= 0) {
            return {};
        }
        m_said.append(buffer.data(), static_cast<std::size_t>(size));
    }
}

std::string Child::WaitForEnd()
{
    std::array<char, 1000> buffer{};
    for (ssize_t size = 0; (size = ::read(m_output, buffer.data(), buffer.size())) > 0;) {
        m_said.append(buffer.data(), static_cast<std::size_t>(size));
    }
    int status = -1;
    ::waitpid(m_process, &status, 0);
    m_process = -1;
    return status == 0 ? m_said : "ended with status " + std::to_string(status) + ": " + m_said;
}

void Child::Signal(int signal) const
{
    if (m_process > 0) {
        ::kill(m_process, signal);
    }
}

void Child::Kill()
{
    if (m_process > 0) {
        Signal(SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
}
