#pragma once

#include "messages.h"
#include "reading.h"

#include <optional>
#include <string>

// How well a machine far away is reached, judged by what has come of it and when. Values. Any
// thread.

namespace plcremote {

/// What is known of the way to a machine.
struct FarLink
{
    using Time = plclink::Clock::time_point;

    std::optional<plclink::LinkState> broken{}; ///< Why there is no broker; none: there is one.
    Time connected{};                           ///< Since when there is one.
    std::optional<Time> heard{};                ///< When values came last.
    milliseconds late{};                        ///< How late those were.
    std::string session{};                      ///< Of the newest values; empty before them.
    std::optional<StateMessage> state{};        ///< The newest one.
    std::string refusal{};                      ///< Why the machine does not tell what we watch.
};

/// @return nothing while it is too early for another judgement than the last.
std::optional<plclink::LinkState> Judge(const FarLink& link, FarLink::Time now);

} // namespace plcremote
