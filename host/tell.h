#pragma once

#include "command_line.h"

#include <string>

// What the host says on standard error. Any thread.

namespace plchost {

inline void Tell(const std::string& sentence)
{
    base::Tell("plchost", sentence);
}

} // namespace plchost
