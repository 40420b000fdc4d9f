#pragma once

#include "result.h"

#include <cstdint>
#include <string>
#include <string_view>

// Who is meant on a network. Values. Any thread.

namespace plclink {

struct HostAndPort
{
    std::string host; ///< A name, or a numeric address without brackets.
    std::uint16_t port = 0;
};

/// Splits "HOST", "HOST:PORT", "[HOST]" and "[HOST]:PORT".
/// @param usualPort when there is none.
/// @return both, or what is wrong with the text.
base::Result<HostAndPort> ParseHostAndPort(std::string_view text, std::uint16_t usualPort);

} // namespace plclink
