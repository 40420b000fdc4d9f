#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace plcremote {

/// What a machine or a viewer says. Any thread.
class Said
{
public:
    void Add(const std::string& sentence)
    {
        const std::lock_guard lock(m_mutex);
        m_lines.push_back(sentence);
        m_news.notify_all();
    }

    /// @return the newest line that holds this; empty when none has come before a generous limit.
    std::string WaitFor(const std::string& part)
    {
        constexpr std::chrono::seconds limit{30};
        std::string found;
        std::unique_lock lock(m_mutex);
        m_news.wait_for(lock, limit, [&] {
            for (const std::string& line : m_lines) {
                if (line.find(part) != std::string::npos) {
                    found = line;
                }
            }
            return !found.empty();
        });
        return found;
    }

    /// How many lines hold this so far.
    std::size_t Count(const std::string& part)
    {
        const std::lock_guard lock(m_mutex);
        return static_cast<std::size_t>(
            std::count_if(m_lines.begin(), m_lines.end(), [&part](const std::string& line) {
                return line.find(part) != std::string::npos;
            }));
    }

    std::vector<std::string> Lines()
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_news;
    std::vector<std::string> m_lines;
};

} // namespace plcremote
