#pragma once

#include <cstdlib>
#include <cstring>

/// @return whether the environment asks for the fault of this name.
inline bool FaultChosen(const char* name)
{
    static const char* const chosen = std::getenv("PLCDEBUG_FAULT");
    return chosen != nullptr && std::strcmp(chosen, name) == 0;
}
