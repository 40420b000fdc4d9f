#include "publication.h"

#include <algorithm>
#include <utility>

namespace plcremote {

namespace {

/// What there is to tell of an operand; nothing before the machine has said anything of it.
std::optional<RemoteValue> ValueOf(const plclink::WatchedOperand& watched)
{
    if (watched.newest) {
        return RemoteValue{watched.operand, watched.newest->value, ""};
    }
    if (!watched.refusal.empty()) {
        return RemoteValue{watched.operand, std::nullopt, watched.refusal};
    }
    return std::nullopt;
}

bool IsSame(const RemoteValue& a, const RemoteValue& b)
{
    return a.operand == b.operand && a.value == b.value && a.refusal == b.refusal;
}

} // namespace

Publication::Publication(std::string session, Time begin)
    : m_session(std::move(session)), m_begin(begin)
{
}

milliseconds Publication::RunningTime(Time now) const
{
    return std::chrono::duration_cast<milliseconds>(now - m_begin);
}

std::optional<ValuesMessage>
Publication::Tick(const std::vector<plclink::WatchedOperand>& watched, Time now)
{
    if (m_told && now - *m_told < publicationTick) {
        return std::nullopt;
    }
    std::vector<RemoteValue> all;
    std::vector<RemoteAge> ages;
    for (const plclink::WatchedOperand& operand : watched) {
        if (const auto value = ValueOf(operand)) {
            all.push_back(*value);
        }
        if (!operand.newest) {
            continue;
        }
        const auto age = std::chrono::duration_cast<milliseconds>(now - operand.newest->taken);
        if (age >= youngAge) {
            ages.push_back({operand.operand, age});
        }
    }

    const bool isWhole = m_wholeIsDue || !m_toldWhole || now - *m_toldWhole >= publicationWhole;
    std::vector<RemoteValue> news;
    std::copy_if(all.begin(), all.end(), std::back_inserter(news), [this](const auto& value) {
        return std::none_of(m_last.begin(), m_last.end(), [&value](const auto& last) {
            return IsSame(value, last);
        });
    });
    if (!isWhole && news.empty() && now - *m_told < publicationPulse) {
        return std::nullopt;
    }

    m_told = now;
    if (isWhole) {
        m_toldWhole = now;
        m_wholeIsDue = false;
    }
    m_last = all;
    return ValuesMessage{
        m_session,
        m_sequence++,
        RunningTime(now),
        isWhole,
        isWhole ? std::move(all) : std::move(news),
        std::move(ages)};
}

} // namespace plcremote
