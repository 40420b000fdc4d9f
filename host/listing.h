#pragma once

#include "result.h"

#include <string>

// Program debug files of machines whose program this host does not know. No windows. Any thread.

namespace plchost {

/// The debugger opens on no less than a block: this one has a single line.
/// @param remark ASCII.
base::Result<std::string> ListingThatSays(const std::string& remark);

} // namespace plchost
