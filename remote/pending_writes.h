#pragma once

#include "messages.h"
#include "source.h"

#include <deque>
#include <mutex>
#include <string>

// Writes that a machine far away has not answered yet. Any thread. No end of a write is called
// while a lock is held.

namespace plcremote {

class PendingWrites
{
public:
    using Time = plclink::Clock::time_point;

    void Add(const WriteMessage& message, plclink::WriteDone done, Time now);

    /// Ends the write that has this id, when it is still under way.
    void Answer(const WrittenMessage& answer);

    /// Ends the write that has this id as one that has never left, when it is still under way.
    void Withdraw(const std::string& id, const std::string& reason);

    /// Ends those that have not been answered within writePatience.
    void Expire(Time now);

    /// Ends all of them: they may have been done, and nobody will say so.
    void EndAll(const std::string& reason);

private:
    struct Order
    {
        WriteMessage message;
        plclink::WriteDone done;
        Time sent;
    };

    /// @return the order with this id, which is under way no longer; nothing when there is none.
    std::optional<Order> Take(const std::string& id);

    std::mutex m_mutex; ///< Guards m_orders, for a look or a change only.
    std::deque<Order> m_orders;
};

} // namespace plcremote
