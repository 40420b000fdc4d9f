#pragma once

#include "literal_queue.h"
#include "plcdebug_host.h"

#include <memory>
#include <vector>

namespace literal {

/// Heap copies of answers, in the order of their delivery.
using Pending = std::vector<std::unique_ptr<CMD_DATA>>;

/// Deletes every pending answer with the key of @p answer, and appends a copy of it.
void AddNewest(Pending& pending, const CMD_DATA& answer);

/// Empties the queue; of several answers with one key only the newest survives.
Pending Drain(Queue<CMD_DATA>& queue);

/// @return whether both deliver the same answers in the same order.
bool SameOrder(const std::vector<CMD_DATA>& product, const Pending& reference);

} // namespace literal
