#include "machine_list.h"

#include "received_values.h"

#include <utility>

namespace plcremote {

namespace {

using plclink::LinkState;
using plclink::LinkStatus;

plclink::MqttAddress AllOf(plclink::MqttAddress plant)
{
    plant.machine = "+";
    return plant;
}

} // namespace

MachineList::MachineList(plclink::MqttAddress plant, plclink::MqttAccess access, Log log)
    : m_plant(AllOf(std::move(plant))), m_log(std::move(log))
{
    m_connection.emplace(ConnectionOrder{
        m_plant,
        std::move(access),
        {MachineTopic(m_plant, "state"), MachineTopic(m_plant, "values")}});
}

MachineList::~MachineList()
{
    m_connection.reset();
}

void MachineList::Start()
{
    m_connection->Start(*this);
}

std::vector<ListedMachine> MachineList::Machines() const
{
    const std::lock_guard lock(m_mutex);
    const Time now = plclink::Clock::now();
    std::vector<ListedMachine> machines;
    for (const auto& [name, link] : m_machines) {
        ListedMachine machine{name, Judge(link, now).value_or(LinkState{})};
        if (link.state) {
            machine.version = link.state->version;
            machine.hasListing = link.state->hasListing;
            machine.writable = link.state->writable;
        }
        machines.push_back(std::move(machine));
    }
    return machines;
}

plclink::LinkState MachineList::Broker() const
{
    const std::lock_guard lock(m_mutex);
    const bool isTooEarly =
        m_broker.status == LinkStatus::Running && plclink::Clock::now() - m_connected < silence;
    return isTooEarly ? LinkState{} : m_broker;
}

void MachineList::OnConnected()
{
    const std::lock_guard lock(m_mutex);
    m_broker = {LinkStatus::Running};
    m_connected = plclink::Clock::now();
    m_machines.clear();
}

void MachineList::OnDisconnected(const std::string& reason, bool isRefused)
{
    const std::lock_guard lock(m_mutex);
    m_broker = {isRefused ? LinkStatus::Refused : LinkStatus::Lost, reason};
}

void MachineList::OnMessage(std::string_view topic, std::string_view payload, bool isRetained)
{
    const auto parsed = ParseTopic(m_plant, topic);
    const auto taken = parsed ? TakeMessage(*parsed, payload, isRetained)
                              : base::Failure{"nobody has asked for its topic"};
    if (!taken && !std::exchange(m_hasToldDrop, true)) {
        m_log(
            "a message" + (parsed ? " of \"" + parsed->machine + '"' : "") +
            " is dropped: " + taken.Message());
    }
}

base::Result<void>
MachineList::TakeMessage(const Topic& topic, std::string_view payload, bool isRetained)
{
    std::optional<StateMessage> state;
    std::string session;
    if (topic.kind == "state") {
        auto read = ReadState(payload);
        if (!read) {
            return base::Failure{read.Message()};
        }
        state = *std::move(read);
    } else {
        const auto values = ReadValues(payload);
        if (!values || isRetained) {
            return base::Failure{values ? "the broker has kept it" : values.Message()};
        }
        session = values->session;
    }
    const std::lock_guard lock(m_mutex);
    if (m_machines.count(topic.machine) == 0 && m_machines.size() >= mostMachines) {
        return base::Failure{"there are more than " + std::to_string(mostMachines) + " machines"};
    }
    FarLink& link = m_machines[topic.machine];
    link.connected = m_connected;
    if (state) {
        link.state = std::move(state);
    } else {
        link.heard = plclink::Clock::now();
        link.session = session;
    }
    return {};
}

} // namespace plcremote
