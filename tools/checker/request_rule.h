#pragma once

#include "plcdebug_host.h"

#include <string>

// Whether a request is as the boundary header describes it. No windows. Any thread.

namespace plccheck {

/// @return empty, or what is wrong with the request.
std::string RequestProblem(const CMD_DATA& request);

} // namespace plccheck
