#pragma once

// The statuses that the host ends with.

namespace plchost {

constexpr int exitGood = 0;
constexpr int exitFailed = 1;     ///< Something is missing; a message has said what.
constexpr int exitUsage = 2;      ///< The command line is wrong.
constexpr int exitThreadRule = 3; ///< A callback came on another thread than the GUI thread.

} // namespace plchost
