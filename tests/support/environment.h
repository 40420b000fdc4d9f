#pragma once

#include <cstdlib>

/// @return the number in an environment variable, by which a test runs for longer than it must.
inline int FromEnvironment(const char* name, int otherwise)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : otherwise;
}
