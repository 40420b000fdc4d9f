#include "plcdebugframe_drain.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

std::vector<CMD_DATA> NewestPerKey(const std::vector<CMD_DATA>& answers)
{
    std::vector<CMD_DATA> newest;
    std::vector<bool> seen(answers.empty() ? 0 : std::numeric_limits<std::uint16_t>::max() + 1U);
    for (auto answer = answers.rbegin(); answer != answers.rend(); ++answer) {
        if (!seen[answer->key]) {
            seen[answer->key] = true;
            newest.push_back(*answer);
        }
    }
    std::reverse(newest.begin(), newest.end());
    return newest;
}

CMD_DATA CopyAnswer(const unsigned char* answer)
{
    CMD_DATA record{};
    std::uint16_t length = 0;
    std::memcpy(&length, answer + offsetof(CMD_DATA, length), sizeof length);
    std::memcpy(&record, answer, std::min<std::size_t>(length, sizeof record));
    return record;
}
