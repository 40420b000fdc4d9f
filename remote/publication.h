#pragma once

#include "machine_link.h"
#include "messages.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// Which values a machine tells when. One thread.

namespace plcremote {

constexpr milliseconds publicationTick{100};  ///< Of messages at most one each.
constexpr milliseconds publicationPulse{300}; ///< Of messages at least one each.
constexpr milliseconds publicationWhole{1000};

class Publication
{
public:
    using Time = plclink::Clock::time_point;

    /// @param session see StateMessage. @param begin of the program's running time.
    Publication(std::string session, Time begin);

    /// To be called each publicationTick.
    /// @return the message to be sent now; nothing: none is due.
    std::optional<ValuesMessage>
    Tick(const std::vector<plclink::WatchedOperand>& watched, Time now);

    /// The next message is a whole one: somebody may have missed the last, or has just come.
    void TellAllNext() { m_wholeIsDue = true; }

    milliseconds RunningTime(Time now) const;

private:
    const std::string m_session;
    const Time m_begin;
    std::uint64_t m_sequence = 0;
    bool m_wholeIsDue = true;
    std::optional<Time> m_told{};
    std::optional<Time> m_toldWhole{};
    std::vector<RemoteValue> m_last{}; ///< As last told.
};

} // namespace plcremote
