#pragma once

#include "connection.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// What a connection tells, kept for tests. Any thread.
class RecordedConnection : public plcremote::ConnectionEvents
{
public:
    struct Message
    {
        std::string topic;
        std::string payload;
        bool isRetained;
    };

    void OnConnected() override
    {
        Note([this] { ++m_connected; });
    }

    void OnDisconnected(const std::string& reason, bool isRefused) override
    {
        Note([&] { m_reasons.push_back((isRefused ? "refused: " : "lost: ") + reason); });
    }

    void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) override
    {
        Note([&] { m_messages.push_back({std::string(topic), std::string(payload), isRetained}); });
    }

    void OnTurn() override
    {
        Note([this] { ++m_turns; });
    }

    /// @return whether it has been connected so often before a generous limit.
    bool WaitForConnections(int count)
    {
        return Wait([this, count] { return m_connected >= count; });
    }

    /// Waits for a reason that holds this. @return all reasons so far when it has not come.
    std::string WaitForReason(const std::string& part)
    {
        std::string found;
        Wait([&] {
            const auto reason = std::find_if(
                m_reasons.begin(), m_reasons.end(), [&part](const std::string& candidate) {
                    return candidate.find(part) != std::string::npos;
                });
            if (reason != m_reasons.end()) {
                found = *reason;
            }
            return !found.empty();
        });
        return found.empty() ? All() : found;
    }

    /// @return whether such a message has come before a generous limit.
    bool WaitForMessage(const std::string& topic, const std::string& payload)
    {
        return Wait([&] {
            return std::any_of(m_messages.begin(), m_messages.end(), [&](const Message& message) {
                return message.topic == topic && message.payload == payload;
            });
        });
    }

    /// @return whether a message that has this in it has come before a generous limit.
    bool WaitForMessageWith(const std::string& part)
    {
        return Wait([&] {
            return std::any_of(m_messages.begin(), m_messages.end(), [&](const Message& message) {
                return message.payload.find(part) != std::string::npos;
            });
        });
    }

    bool WaitForMessages(std::size_t count)
    {
        return Wait([this, count] { return m_messages.size() >= count; });
    }

    bool WaitForTurns(int more)
    {
        const int wanted = Turns() + more;
        return Wait([this, wanted] { return m_turns >= wanted; });
    }

    std::vector<Message> Messages()
    {
        const std::lock_guard lock(m_mutex);
        return m_messages;
    }

    std::vector<std::string> Reasons()
    {
        const std::lock_guard lock(m_mutex);
        return m_reasons;
    }

private:
    void Note(const std::function<void()>& note)
    {
        const std::lock_guard lock(m_mutex);
        note();
        m_news.notify_all();
    }

    bool Wait(const std::function<bool()>& condition)
    {
        constexpr std::chrono::seconds limit{30};
        std::unique_lock lock(m_mutex);
        return m_news.wait_for(lock, limit, condition);
    }

    int Turns()
    {
        const std::lock_guard lock(m_mutex);
        return m_turns;
    }

    std::string All()
    {
        const std::lock_guard lock(m_mutex);
        std::string all;
        for (const std::string& reason : m_reasons) {
            all += reason + '\n';
        }
        return all;
    }

    std::mutex m_mutex;
    std::condition_variable m_news;
    int m_connected = 0;
    int m_turns = 0;
    std::vector<std::string> m_reasons;
    std::vector<Message> m_messages;
};
