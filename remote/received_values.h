#pragma once

#include "freshness.h"
#include "messages.h"
#include "source.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What a machine far away has told of its operands, and how old that is. One thread.

namespace plcremote {

/// A machine is silent when it has told no values for this time.
constexpr milliseconds silence{1000};

class ReceivedValues
{
public:
    using Time = plclink::Clock::time_point;

    /// @param came when the message came.
    /// @return whether it is of use. One that is not newer than the last is not, and none of
    ///         another session while the known one is not silent: there is but one machine of a
    ///         name.
    bool Take(const ValuesMessage& message, Time came);

    /// A connection begins anew: what was told without one was not lost on the way.
    void Restart();

    /// What the message that was taken last says of these operands, by the list's places. After a
    /// message was lost that is nothing of an operand that may have changed in it.
    std::vector<plclink::PlacedReading> Readings(const plclink::WatchList& list) const;

    /// Those of the list that the machine does not let be read, with the reason, each once until
    /// it has been read after all.
    std::vector<std::pair<plc::Operand, std::string>> NewRefusals(const plclink::WatchList& list);

    /// Of the machine's run; empty before the first message.
    const std::string& Session() const { return m_session; }

    /// When the last message came; nothing before the first one of a connection.
    std::optional<Time> Heard() const { return m_heard; }

    /// How long the machine's program runs at least. Only after a message.
    milliseconds RunningTime(Time now) const;

    /// Of the message that was taken last.
    milliseconds Late() const { return m_late; }

    std::uint64_t LostCount() const { return m_sequence.LostCount(); }

private:
    struct Less
    {
        bool operator()(const plc::Operand& a, const plc::Operand& b) const;
    };

    struct Known
    {
        std::optional<std::uint32_t> value{};
        std::string refusal{};
        milliseconds age{};
        bool isSure = false; ///< No message is missing that may have told another value.
    };

    std::string m_session;
    Sequence m_sequence;
    Lateness m_lateness;
    std::optional<Time> m_heard;
    milliseconds m_running{}; ///< Of the message that was taken last, as the next.
    milliseconds m_late{};
    std::map<plc::Operand, Known, Less> m_known;
    std::map<plc::Operand, std::string, Less> m_refused; ///< That NewRefusals() has given.
};

} // namespace plcremote
