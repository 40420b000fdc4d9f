#pragma once

#include "plcdebug_host.h"

#include <ktcore/ktvaluequeue.h>

#include <cstdint>
#include <list>
#include <unordered_map>

// The rules of the answer queues' drain. No windows. Any thread.

/// Of several answers for one variable only the newest survives, at the place of its latest
/// arrival: keys 7, 9, 7 give 9, 7.
class NewestAnswers
{
public:
    NewestAnswers() = default;
    ~NewestAnswers() = default;
    NewestAnswers(const NewestAnswers&) = delete;
    NewestAnswers(NewestAnswers&&) = default;
    NewestAnswers& operator=(const NewestAnswers&) = delete;
    NewestAnswers& operator=(NewestAnswers&&) = default;

    void Add(const CMD_DATA& answer);

    /// @return the survivors in the order of their delivery.
    const std::list<CMD_DATA>& InOrder() const { return m_answers; }

private:
    std::list<CMD_DATA> m_answers;
    std::unordered_map<std::uint16_t, std::list<CMD_DATA>::iterator> m_ofKey;
};

/// Takes all that a queue holds, until it is found empty.
NewestAnswers Drain(KtValueQueue<CMD_DATA>& queue);

/// Copies an answer of the host: as many bytes as its length word says, 506 at the most; the rest
/// is 0.
/// @param answer not null, at any alignment.
CMD_DATA CopyAnswer(const unsigned char* answer);
