#pragma once

#include "operand.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

// What a machine tells: values with their age, and how well it can be reached. Values. Any thread.

namespace plclink {

using Clock = std::chrono::steady_clock;

/// The value of an operand.
struct Reading
{
    std::uint32_t value = 0; ///< 0 or 1 for a bit; the bits of all others, without sign.
    Clock::time_point taken; ///< When the machine had it, as far as can be known; its age is the
                             ///< time since.
};

enum class LinkStatus : std::uint8_t
{
    Connecting, ///< Not reached yet.
    Running,    ///< Readings come in time.
    Slow,       ///< Readings come, but later than two of their turns.
    Lost,       ///< No readings come; it is tried again.
    Refused     ///< The machine answers and will not serve; it is tried again.
};

struct LinkState
{
    LinkStatus status = LinkStatus::Connecting;
    std::string reason{}; ///< A sentence for Lost and Refused, else empty.
};

bool operator==(const LinkState& a, const LinkState& b);

/// "connecting", "running", "slow", "lost", "refused".
std::string_view StatusText(LinkStatus status);

} // namespace plclink
