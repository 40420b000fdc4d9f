#pragma once

#include "connection.h"
#include "machine_link.h"
#include "write_list.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Publishes a machine on a broker: one more client of its link.

namespace plcremote {

struct PublishOrder
{
    plclink::MqttAddress address;
    plclink::MqttAccess access;
    WriteList writeList{};
    std::string listing{};                ///< Bytes of the program debug file; empty: none.
    std::vector<plc::Operand> operands{}; ///< Told to everybody, whoever watches.
    std::string version{};                ///< Of this program.
};

class Publisher
{
public:
    using Log = std::function<void(const std::string& sentence)>;

    /// @param link outlives the publisher; is started by others.
    /// @param log takes what has to be said, each write too. [any-thread]
    /// @param end is called once when this machine is published already by another program, with a
    ///        sentence; nothing more is published then. [any-thread]
    Publisher(plclink::MachineLink& link, PublishOrder order, Log log, Log end);
    ~Publisher();
    Publisher(const Publisher&) = delete;
    Publisher(Publisher&&) = delete;
    Publisher& operator=(const Publisher&) = delete;
    Publisher& operator=(Publisher&&) = delete;

    void Start();

    /// The user who has the program states from far away; empty: nobody. [any-thread]
    std::string StepsUser() const;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

} // namespace plcremote
