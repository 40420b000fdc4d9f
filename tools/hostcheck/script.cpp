#include "script.h"

#include <algorithm>

namespace hostcheck {

namespace {

constexpr std::size_t operandsAtFirst = 3;

// In ticks. Between two of them lies enough time to see a host that does not follow.
constexpr int askTheRest = 5;
constexpr int change = 45;
constexpr int stopSteps = 90;
constexpr int releaseAll = 120;
constexpr int startAgain = 150;

} // namespace

void Script::AskFor(Requests& requests, std::size_t operand)
{
    const std::uint16_t key = m_nextKey++;
    m_asked.emplace_back(key, operand);
    requests.push_back(PlcMakeReadRequest(key, m_operands[operand].c_str()));
    requests.push_back(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
}

void Script::AskForSteps(Requests& requests)
{
    if (!m_steps.empty()) {
        const Steps steps = m_steps[m_nextSteps++ % m_steps.size()];
        requests.push_back(PlcMakePrgStateRequest(steps.first, steps.last));
        m_stepsAsked = true;
    }
}

/// Every second variable leaves the list and comes again, under another key; another one stands in
/// it twice then.
void Script::ExchangeEverySecond(Requests& requests)
{
    const auto before = std::exchange(m_asked, {});
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (i % 2 == 0) {
            requests.push_back(PlcMakeDeleteRequest(before[i].first, PLC_DELETE_ARG_RELEASE));
        } else {
            m_asked.push_back(before[i]);
        }
    }
    for (std::size_t i = 0; i < before.size(); i += 2) {
        AskFor(requests, before[i].second);
    }
    AskFor(requests, m_asked.front().second);
}

Requests Script::Open()
{
    Requests requests;
    for (std::size_t i = 0; i < std::min(operandsAtFirst, m_operands.size()); ++i) {
        AskFor(requests, i);
    }
    return requests;
}

Requests Script::Next()
{
    Requests requests;
    switch (++m_tick) {
    case askTheRest:
        for (std::size_t i = operandsAtFirst; i < m_operands.size(); ++i) {
            AskFor(requests, i);
        }
        AskForSteps(requests);
        break;
    case change:
        ExchangeEverySecond(requests);
        AskForSteps(requests);
        break;
    case stopSteps:
        if (std::exchange(m_stepsAsked, false)) {
            requests.push_back(PlcMakeStopRequest());
        }
        break;
    case releaseAll:
        requests = Close();
        break;
    case startAgain:
        m_isThrough = true;
        m_tick = 0;
        requests = Open();
        break;
    default:
        break;
    }
    return requests;
}

Requests Script::Close()
{
    Requests requests;
    for (const auto& [key, operand] : std::exchange(m_asked, {})) {
        requests.push_back(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_RELEASE));
    }
    if (std::exchange(m_stepsAsked, false)) {
        requests.push_back(PlcMakeStopRequest());
    }
    return requests;
}

} // namespace hostcheck
