#include "plcdebugframe_drain.h"

#include <algorithm>
#include <cstring>

namespace {

/// A queue with fewer answers is left alone: far more than a host sends within a tick.
constexpr std::size_t fewAnswers = 16384;

/// The most that a queue keeps when it is thinned out; more than there are variables.
constexpr std::size_t mostAnswers = 70000;

/// With as many new answers in a tick a flood is not over.
constexpr std::size_t floodOfATick = 500;

constexpr std::size_t fewestPlaces = 64;

std::size_t FirstPlace(std::uint64_t key, std::size_t places)
{
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio
    constexpr int upperHalf = 32;
    return static_cast<std::size_t>((key * spread) >> upperHalf) & (places - 1);
}

} // namespace

AnswerQueue::AnswerQueue(AnswerKey keyOf)
    : m_newestQueued(keyOf), m_newestTaken(keyOf), m_thinOutAt(fewAnswers)
{
}

std::uint64_t VariableOf(const CMD_DATA& answer)
{
    return answer.key;
}

std::uint64_t StepsOf(const CMD_DATA& answer)
{
    constexpr int stepBits = 32;
    return std::uint64_t{static_cast<std::uint32_t>(PlcFirstStep(&answer))} << stepBits |
           static_cast<std::uint32_t>(PlcLastStep(&answer));
}

AnswerArray NewestAnswers::TakeOlder(AnswerArray& answers)
{
    if (answers.GetCount() < 2) {
        return {};
    }
    StartRound(answers.GetCount());
    return answers.TakeIf([this](const CMD_DATA& answer) { return IsSeen(m_keyOf(answer)); });
}

void NewestAnswers::StartRound(std::size_t answers)
{
    ++m_round;
    if (m_places.size() < 2 * answers || m_round == 0) {
        std::size_t places = std::max(m_places.size(), fewestPlaces);
        while (places < 2 * answers) {
            places *= 2;
        }
        m_places.assign(places, Place{});
        m_round = 1;
    }
}

bool NewestAnswers::IsSeen(std::uint64_t key)
{
    std::size_t place = FirstPlace(key, m_places.size());
    while (m_places[place].round == m_round) {
        if (m_places[place].key == key) {
            return true;
        }
        place = (place + 1) & (m_places.size() - 1);
    }
    m_places[place] = {key, m_round};
    return false;
}

void AnswerQueue::Push(const CMD_DATA& answer)
{
    KtValueQueue::Push(answer, [this](AnswerArray& queued) { return ThinOut(queued); });
}

AnswerArray AnswerQueue::ThinOut(AnswerArray& queued)
{
    if (queued.GetCount() < m_thinOutAt) {
        return {};
    }
    AnswerArray out = m_newestQueued.TakeOlder(queued);
    if (queued.GetCount() > mostAnswers) {
        out.Append(queued.TakeFirst(queued.GetCount() - mostAnswers));
    }
    // Not before as many again have come: a push shall cost little on the average.
    m_thinOutAt = std::max(fewAnswers, 2 * queued.GetCount());
    return out;
}

void AnswerQueue::DeliverNewest(const Deliver& deliver, const TimeIsUp& timeIsUp)
{
    auto taken = TakeAll();
    while (!taken.IsEmpty()) {
        m_waiting.Append(std::move(taken));
        taken = timeIsUp() ? AnswerArray() : TakeAll();
    }
    m_flooded = m_waiting.GetCount() >= floodOfATick;
    AnswerArray done = m_newestTaken.TakeOlder(m_waiting);
    done.Append(DeliverWaiting(deliver, timeIsUp));
    GiveBack(std::move(done));
}

void AnswerQueue::DeliverAll(const Deliver& deliver, const TimeIsUp& timeIsUp)
{
    if (m_flooded) {
        DeliverNewest(deliver, timeIsUp);
        return;
    }
    AnswerArray done;
    for (auto taken = TakeAll(); !taken.IsEmpty(); taken = TakeAll()) {
        m_waiting = std::move(taken);
        done.Append(DeliverWaiting(deliver, timeIsUp));
        if (m_flooded || timeIsUp()) {
            break;
        }
    }
    GiveBack(std::move(done));
}

void AnswerQueue::Close()
{
    KtValueQueue::Close();
    m_waiting = {};
}

AnswerArray AnswerQueue::DeliverWaiting(const Deliver& deliver, const TimeIsUp& timeIsUp)
{
    std::size_t delivered = 0;
    while (delivered < m_waiting.GetCount() && (delivered == 0 || !timeIsUp())) {
        deliver(m_waiting[delivered]);
        ++delivered;
    }
    m_flooded = m_flooded || delivered < m_waiting.GetCount();
    return m_waiting.TakeFirst(delivered);
}

CMD_DATA CopyAnswer(const unsigned char* answer)
{
    CMD_DATA record{};
    std::uint16_t length = 0;
    std::memcpy(&length, answer + offsetof(CMD_DATA, length), sizeof length);
    std::memcpy(&record, answer, std::min<std::size_t>(length, sizeof record));
    return record;
}
