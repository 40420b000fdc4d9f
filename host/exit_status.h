#pragma once

// The statuses that the host ends with, besides that of a wrong command line.

namespace plchost {

constexpr int exitGood = 0;
constexpr int exitFailed = 1;     ///< Something is missing; a message has said what.
constexpr int exitThreadRule = 3; ///< A callback came on another thread than the GUI thread.

} // namespace plchost
