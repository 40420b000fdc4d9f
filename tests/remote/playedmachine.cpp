#include "playedmachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

using namespace plcremote;

namespace {

plclink::MqttAddress AddressBehind(const Broker& broker, const std::string& port)
{
    plclink::MqttAddress address = broker.Address("press7", "press7");
    address.port = static_cast<std::uint16_t>(std::stoi(port));
    return address;
}

ConnectionOrder OrderOf(const plclink::MqttAddress& address, const plclink::MqttAccess& access)
{
    const Viewer anybody{"+", "+"};
    const StateMessage gone{
        PlayedMachine::session, {plclink::LinkStatus::Lost, "its program is gone"}};
    return {
        address,
        access,
        {ViewerTopic(address, "watch", anybody),
         ViewerTopic(address, "steps", anybody),
         ViewerTopic(address, "write", anybody)},
        LastWill{MachineTopic(address, "state"), Text(gone)}};
}

} // namespace

PlayedMachine::PlayedMachine(const Broker& broker, const std::string& port)
    : m_address(AddressBehind(broker, port)),
      m_connection(OrderOf(m_address, broker.Access("press7")))
{
    m_connection.Start(*this);
    EXPECT_TRUE(Wait([this] { return m_isConnected; }));
}

void PlayedMachine::OnConnected()
{
    const std::lock_guard lock(m_mutex);
    m_isConnected = true;
    m_news.notify_all();
}

void PlayedMachine::OnMessage(std::string_view topic, std::string_view payload, bool)
{
    const auto parsed = ParseTopic(m_address, topic);
    ASSERT_TRUE(parsed && parsed->viewer);
    const std::lock_guard lock(m_mutex);
    m_viewer = *parsed->viewer;
    m_asked.emplace_back(parsed->kind, payload);
    m_news.notify_all();
}

void PlayedMachine::OnTurn()
{
    const std::lock_guard lock(m_mutex);
    ++m_turns;
    m_news.notify_all();
    if (m_isSilent) {
        return;
    }
    const auto message = m_publication.Tick(m_operands, Clock::now());
    if (message && !std::exchange(m_losesNext, false)) {
        m_connection.Publish(MachineTopic(m_address, "values"), Text(*message));
    }
}

void PlayedMachine::TellState(const plclink::LinkState& link, bool hasListing)
{
    StateMessage state{session, link, "1.2.3"};
    state.hasListing = hasListing;
    Send("state", Text(state), true);
}

void PlayedMachine::Set(const std::string& operand, std::uint32_t value)
{
    SetOld(operand, value, Clock::now());
}

void PlayedMachine::SetOld(const std::string& operand, std::uint32_t value, Clock::time_point taken)
{
    const plc::Operand parsed = plc::ParseOperand(operand).value();
    const std::lock_guard lock(m_mutex);
    const auto known =
        std::find_if(m_operands.begin(), m_operands.end(), [&parsed](const auto& candidate) {
            return candidate.operand == parsed;
        });
    const plclink::Reading reading{value, taken};
    if (known == m_operands.end()) {
        m_operands.push_back({parsed, reading, ""});
    } else {
        known->newest = reading;
    }
}

void PlayedMachine::Silence(bool isSilent)
{
    const std::lock_guard lock(m_mutex);
    m_isSilent = isSilent;
}

void PlayedMachine::LoseNext()
{
    const std::lock_guard lock(m_mutex);
    m_losesNext = true;
}

void PlayedMachine::Send(const std::string& kind, const std::string& payload, bool isRetained)
{
    EXPECT_TRUE(m_connection.Publish(MachineTopic(m_address, kind), payload, isRetained));
}

void PlayedMachine::Answer(const AnswerMessage& answer)
{
    Viewer viewer;
    {
        const std::lock_guard lock(m_mutex);
        viewer = m_viewer;
    }
    EXPECT_TRUE(m_connection.Publish(ViewerTopic(m_address, "answer", viewer), Text(answer)));
}

std::string PlayedMachine::WaitFor(const std::string& kind, const std::string& part)
{
    std::string found;
    Wait([&] {
        const auto asked = std::find_if(m_asked.begin(), m_asked.end(), [&](const auto& candidate) {
            return candidate.first == kind && candidate.second.find(part) != std::string::npos;
        });
        if (asked != m_asked.end()) {
            found = asked->second;
        }
        return asked != m_asked.end();
    });
    return found;
}

bool PlayedMachine::WaitForCount(const std::string& kind, std::size_t count)
{
    return Wait([&] {
        return std::count_if(m_asked.begin(), m_asked.end(), [&kind](const auto& candidate) {
                   return candidate.first == kind;
               }) >= static_cast<std::ptrdiff_t>(count);
    });
}

std::size_t PlayedMachine::Count(const std::string& kind)
{
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_asked.begin(), m_asked.end(), [&kind](const auto& candidate) {
            return candidate.first == kind;
        }));
}

bool PlayedMachine::WaitForTurns(int more)
{
    int wanted = 0;
    {
        const std::lock_guard lock(m_mutex);
        wanted = m_turns + more;
    }
    return Wait([this, wanted] { return m_turns >= wanted; });
}

bool PlayedMachine::Wait(const std::function<bool()>& condition)
{
    constexpr std::chrono::seconds limit{60};
    std::unique_lock lock(m_mutex);
    return m_news.wait_for(lock, limit, condition);
}
