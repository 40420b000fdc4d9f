#pragma once

#include "result.h"

#include <string>

/// What went wrong; empty when nothing did.
template <typename T> std::string MessageOf(const base::Result<T>& result)
{
    return result ? "" : result.Message();
}
