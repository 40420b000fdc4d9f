#pragma once

#include "broker.h"
#include "connection.h"
#include "messages.h"
#include "publication.h"
#include "topics.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// A machine "press7" of the broker's plant, which does what the test says. Any thread.
class PlayedMachine : private plcremote::ConnectionEvents
{
public:
    using Clock = plclink::Clock;

    /// @param port of the broker or of a proxy before it.
    PlayedMachine(const Broker& broker, const std::string& port);

    /// Tells its state, retained.
    void TellState(const plclink::LinkState& link, bool hasListing = false);

    /// Has this value from now on.
    void Set(const std::string& operand, std::uint32_t value);

    /// As above, and as old as this.
    void SetOld(const std::string& operand, std::uint32_t value, Clock::time_point taken);

    /// Tells no values from now on, or some again.
    void Silence(bool isSilent);

    /// The next message of values is lost on the way.
    void LoseNext();

    /// Sends a message with a topic of this machine.
    void Send(const std::string& kind, const std::string& payload, bool isRetained = false);

    /// Answers the viewer who has asked last.
    void Answer(const plcremote::AnswerMessage& answer);

    /// Waits for a message of this kind that says this. @return its text; empty: none has come.
    std::string WaitFor(const std::string& kind, const std::string& part);

    /// Waits for so many messages of this kind.
    bool WaitForCount(const std::string& kind, std::size_t count);

    /// How many of this kind have come.
    std::size_t Count(const std::string& kind);

    bool WaitForTurns(int more);

    static constexpr const char* session = "00000000000000aa";

private:
    void OnConnected() override;

    void OnDisconnected(const std::string&, bool) override {}

    void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) override;
    void OnTurn() override;
    bool Wait(const std::function<bool()>& condition);

    const plclink::MqttAddress m_address;
    std::mutex m_mutex;
    std::condition_variable m_news;
    bool m_isConnected = false;
    bool m_isSilent = false;
    bool m_losesNext = false;
    int m_turns = 0;
    std::optional<std::string> m_state;
    std::vector<plclink::WatchedOperand> m_operands;
    std::vector<std::pair<std::string, std::string>> m_asked; ///< Kind and text.
    plcremote::Viewer m_viewer;                               ///< Who has asked last.
    plcremote::Publication m_publication{session, Clock::now()};
    plcremote::Connection m_connection; ///< Last: its thread uses all of the above.
};
