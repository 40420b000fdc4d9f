#pragma once

#include <string>

// Names that nobody else has. Any thread.

namespace plcremote {

/// Sixteen hexadecimal digits: a session, a window, a write, a client of a broker.
std::string RandomId();

} // namespace plcremote
