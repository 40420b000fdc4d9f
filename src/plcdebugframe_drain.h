#pragma once

#include "plcdebug_host.h"

#include <ktcore/ktvaluequeue.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

// The answers' way from the host's threads to the pages. No windows.

/// Answers in order of arrival, each a heap copy.
using AnswerArray = KtValueArray<CMD_DATA>;

/// What an answer is about: of two with the same key the newer one replaces what the older one has
/// shown.
using AnswerKey = std::uint64_t (*)(const CMD_DATA&);

/// The request id of the variable that a read answer belongs to.
std::uint64_t VariableOf(const CMD_DATA& answer);

/// The range of steps that a program-state answer is for.
std::uint64_t StepsOf(const CMD_DATA& answer);

/// Of several answers with one key only the newest survives, at the place of its arrival: keys 7,
/// 9, 7 give 9, 7. One thread at a time.
class NewestAnswers
{
public:
    explicit NewestAnswers(AnswerKey keyOf) : m_keyOf(keyOf) {}

    /// Takes all others out. @return them, in any order.
    AnswerArray TakeOlder(AnswerArray& answers);

private:
    /// A place of the table; in use when its round is that of the table.
    struct Place
    {
        std::uint64_t key;
        std::uint32_t round;
    };

    void StartRound(std::size_t answers);
    bool IsSeen(std::uint64_t key);

    AnswerKey m_keyOf;
    std::vector<Place> m_places; ///< A power of two of them, at most half in use.
    std::uint32_t m_round = 0;
};

/// The answers of one kind that wait for a tick of the frame.
///
/// A flood, which the GUI thread cannot follow, is thinned out to the newest answers of each key,
/// so that neither the memory nor the time of a tick grows without end.
class AnswerQueue : public KtValueQueue<CMD_DATA>
{
public:
    using Deliver = std::function<void(const CMD_DATA&)>;
    using TimeIsUp = std::function<bool()>;

    explicit AnswerQueue(AnswerKey keyOf);

    /// Queues an answer. In a queue that nobody has emptied for long, older answers of the same key
    /// go. Any thread.
    void Push(const CMD_DATA& answer);

    /// Takes all that is queued until the queue is found empty, and delivers the newest of each key
    /// in the order of their arrival. When the time is up the rest waits for the next call, but one
    /// is always delivered. GUI thread.
    void DeliverNewest(const Deliver& deliver, const TimeIsUp& timeIsUp);

    /// Takes and delivers until the queue is found empty: every answer, in the order of arrival.
    /// Once the time was up, and as long as the flood lasts, as DeliverNewest(). GUI thread.
    void DeliverAll(const Deliver& deliver, const TimeIsUp& timeIsUp);

    /// Forgets all answers; from now on none is kept. GUI thread, not while it delivers.
    void Close();

private:
    AnswerArray ThinOut(AnswerArray& queued);
    AnswerArray DeliverWaiting(const Deliver& deliver, const TimeIsUp& timeIsUp);

    NewestAnswers m_newestQueued; ///< Used under the queue's lock.
    NewestAnswers m_newestTaken;
    std::size_t m_thinOutAt; ///< Under the queue's lock.
    AnswerArray m_waiting;   ///< Taken, but not delivered yet.
    bool m_flooded = false;  ///< The time was up, and since then no tick has found few answers.
};

/// Copies an answer of the host: as many bytes as its length word says, 506 at the most; the rest
/// is 0. Any thread.
/// @param answer not null, at any alignment.
CMD_DATA CopyAnswer(const unsigned char* answer);
