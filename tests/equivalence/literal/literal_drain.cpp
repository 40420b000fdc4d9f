#include "literal_drain.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace literal {

void AddNewest(Pending& pending, const CMD_DATA& answer)
{
    for (std::size_t position = pending.size(); position-- > 0;) {
        if (pending[position]->key == answer.key) {
            pending.erase(pending.begin() + static_cast<std::ptrdiff_t>(position));
        }
    }
    pending.push_back(std::make_unique<CMD_DATA>(answer));
}

Pending Drain(Queue<CMD_DATA>& queue)
{
    Pending pending;
    for (CMD_DATA answer; queue.Pop(answer);) {
        AddNewest(pending, answer);
    }
    return pending;
}

bool SameOrder(const std::vector<CMD_DATA>& product, const Pending& reference)
{
    return std::equal(
        product.begin(),
        product.end(),
        reference.begin(),
        reference.end(),
        [](const CMD_DATA& one, const std::unique_ptr<CMD_DATA>& other) {
            return std::memcmp(&one, other.get(), sizeof one) == 0;
        });
}

} // namespace literal
