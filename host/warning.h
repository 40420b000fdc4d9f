#pragma once

#include <mutex>
#include <string>
#include <utility>

// What the operator has to see, from any thread to the window. Any thread.

namespace plchost {

/// Keeps the newest warning until somebody shows it.
class Warning
{
public:
    void Put(std::string text)
    {
        const std::lock_guard lock(m_mutex);
        m_text = std::move(text);
    }

    /// @return empty: there is none that has not been taken.
    std::string Take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_text, {});
    }

private:
    std::mutex m_mutex; ///< Guards m_text.
    std::string m_text;
};

} // namespace plchost
