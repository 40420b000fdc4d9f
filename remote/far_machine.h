#pragma once

#include "connection.h"
#include "far_link.h"
#include "pending_writes.h"
#include "received_values.h"
#include "topics.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// A machine far away: what is wanted of it is asked for over its broker, what it says is judged and
// handed on. Behind MqttSource, whose functions these are.

namespace plcremote {

class FarMachine : private ConnectionEvents
{
public:
    using Time = plclink::Clock::time_point;
    using Log = std::function<void(const std::string& sentence)>;

    FarMachine(plclink::MqttAddress address, plclink::MqttAccess access, Log log);
    ~FarMachine() override;
    FarMachine(const FarMachine&) = delete;
    FarMachine(FarMachine&&) = delete;
    FarMachine& operator=(const FarMachine&) = delete;
    FarMachine& operator=(FarMachine&&) = delete;

    void Start(plclink::SourceEvents& events);
    void Watch(std::shared_ptr<const plclink::WatchList> list);
    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done);
    void WatchSteps(std::optional<plc::StepRange> range);
    std::string Listing() const;
    bool IsIntroduced() const;
    std::vector<plc::Operand> Told() const;

    milliseconds TurnTime() const { return milliseconds(m_turn); }

    plclink::MessageLosses Losses() const { return {m_lost, m_dropped}; }

private:
    /// The machine's program, as a write has to name it.
    struct Run
    {
        std::string session{};
        milliseconds running{};
        Time came{};
    };

    void OnConnected() override;
    void OnDisconnected(const std::string& reason, bool isRefused) override;
    void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) override;
    void OnTurn() override;
    base::Result<void> TakeMessage(const Topic& topic, std::string_view payload, bool isRetained);
    base::Result<void> TakeState(std::string_view payload);
    base::Result<void> TakeListing(std::string_view payload);
    base::Result<void> TakeValues(std::string_view payload);
    base::Result<void> TakeAnswer(std::string_view payload);
    void TakeRefusal(const RefusalMessage& refusal);
    void TakeWishes(Time now);
    void Ask(Time now);
    void OfferSteps();
    void JudgeLink(Time now);
    std::string ViewerTopicOf(std::string_view kind) const;

    const plclink::MqttAddress m_address;
    const Viewer m_viewer;
    const Log m_log;

    // Of the connection's thread.
    plclink::SourceEvents* m_events = nullptr;        ///< Not owned; outlives this.
    std::shared_ptr<const plclink::WatchList> m_list; ///< Not null.
    std::optional<plc::StepRange> m_steps;
    Time m_watchDue = Time::max(); ///< When to ask for the operands again.
    Time m_stepsDue = Time::max();
    std::optional<StepStatesMessage> m_open; ///< States that nobody could take yet.
    ReceivedValues m_values;
    FarLink m_link;
    plclink::LinkState m_state;
    std::string m_stepsRefusal;
    std::set<std::string> m_toldKinds; ///< Of messages that were dropped.

    mutable std::mutex m_mutex; ///< Guards what follows, for a look or a change only.
    std::shared_ptr<const plclink::WatchList> m_wantedList; ///< Null: it has been taken.
    std::optional<plc::StepRange> m_wantedSteps;
    bool m_hasWantedSteps = false; ///< They have not been taken yet.
    std::string m_unwritable = "the machine has not been reached yet";
    Run m_run;
    std::string m_listing;
    std::optional<bool> m_hasListing;                ///< As the state says; nothing before it.
    bool m_isGone = false;                           ///< As the state says.
    std::optional<std::vector<plc::Operand>> m_told; ///< In the newest whole message.

    std::atomic<milliseconds::rep> m_turn{0};
    std::atomic<std::uint64_t> m_lost{0};
    std::atomic<std::uint64_t> m_dropped{0};
    PendingWrites m_writes;
    std::optional<Connection> m_connection; ///< Last: its thread uses all of the above.
};

} // namespace plcremote
