#pragma once

#include "plcdebug_host.h"
#include "result.h"

// Whether a request is as the boundary header describes it. No windows. Any thread.

namespace plccheck {

/// @return what is wrong with the request, if anything.
base::Result<void> CheckRequest(const CMD_DATA& request);

} // namespace plccheck
