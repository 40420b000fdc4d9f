#pragma once

#include "plcdebug_host.h"

#include <vector>

// The rules of the answer queues' drain. No windows. Any thread.

/// Of several answers for one variable only the newest survives, at the place of its latest
/// arrival: keys 7, 9, 7 give 9, 7.
std::vector<CMD_DATA> NewestPerKey(const std::vector<CMD_DATA>& answers);

/// Copies an answer of the host: as many bytes as its length word says, 506 at the most; the rest
/// is 0.
/// @param answer not null, at any alignment.
CMD_DATA CopyAnswer(const unsigned char* answer);
