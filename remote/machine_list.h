#pragma once

#include "connection.h"
#include "far_link.h"
#include "messages.h"
#include "topics.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Who is there: the machines of a plant, as its broker knows them.

namespace plcremote {

/// More of one plant are not listed.
constexpr std::size_t mostMachines = 10000;

struct ListedMachine
{
    std::string name{};
    plclink::LinkState link{};
    std::string version{};               ///< Of the publishing program; empty: not known.
    bool hasListing = false;             ///< For the program page.
    std::vector<std::string> writable{}; ///< See StateMessage.
};

class MachineList : private ConnectionEvents
{
public:
    using Log = std::function<void(const std::string& sentence)>;

    /// @param plant without a machine.
    /// @param log takes what has to be said about messages that were dropped. [any-thread]
    MachineList(plclink::MqttAddress plant, plclink::MqttAccess access, Log log);
    ~MachineList() override;
    MachineList(const MachineList&) = delete;
    MachineList(MachineList&&) = delete;
    MachineList& operator=(const MachineList&) = delete;
    MachineList& operator=(MachineList&&) = delete;

    /// To be called once.
    void Start();

    /// Sorted by name. [any-thread]
    std::vector<ListedMachine> Machines() const;

    /// How the broker is reached; running: all that it knows has come, and each machine that lives
    /// has had the time to be heard. [any-thread]
    plclink::LinkState Broker() const;

private:
    using Time = plclink::Clock::time_point;

    void OnConnected() override;
    void OnDisconnected(const std::string& reason, bool isRefused) override;
    void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) override;

    void OnTurn() override {}

    base::Result<void> TakeMessage(const Topic& topic, std::string_view payload, bool isRetained);

    const plclink::MqttAddress m_plant;
    const Log m_log;
    bool m_hasToldDrop = false; ///< Of the connection's thread.

    mutable std::mutex m_mutex; ///< Guards what follows, for a look or a change only.
    plclink::LinkState m_broker;
    Time m_connected{};
    std::map<std::string, FarLink> m_machines;
    std::optional<Connection> m_connection; ///< Last: its thread uses all of the above.
};

} // namespace plcremote
