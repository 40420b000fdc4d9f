#include "plcdebugframe_drain.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

void NewestAnswers::Add(const CMD_DATA& answer)
{
    const auto known = m_ofKey.find(answer.key);
    if (known == m_ofKey.end()) {
        m_answers.push_back(answer);
        m_ofKey.emplace(answer.key, std::prev(m_answers.end()));
    } else {
        *known->second = answer;
        m_answers.splice(m_answers.end(), m_answers, known->second);
    }
}

NewestAnswers Drain(KtValueQueue<CMD_DATA>& queue)
{
    NewestAnswers newest;
    // What arrives meanwhile belongs to the same tick: it is over when the queue is found empty.
    for (auto taken = queue.TakeAll(); !taken.IsEmpty(); taken = queue.TakeAll()) {
        for (std::size_t i = 0; i < taken.GetCount(); ++i) {
            newest.Add(taken[i]);
        }
    }
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
