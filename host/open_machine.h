#pragma once

#include "address.h"
#include "modbus_map.h"
#include "mqtt_source.h"
#include "program.h"
#include "source.h"

#include <functional>
#include <memory>
#include <string>

// Machines by their addresses. No windows. Any thread.

namespace plchost {

/// @return an assembled program, or all errors of its source.
base::Result<plc::Program> ReadProgram(const std::string& file);

/// @return the device, not started.
std::unique_ptr<plclink::Source>
OpenDevice(const plclink::ModbusAddress& address, plclink::ModbusMap map);

/// @param log takes what has to be said beside states and values. [any-thread]
/// @return the machine far away, not started, or why nothing goes there.
base::Result<std::unique_ptr<plcremote::MqttSource>> OpenFarMachine(
    const plclink::MqttAddress& address,
    const plclink::MqttAccess& access,
    std::function<void(const std::string& sentence)> log);

/// A machine to be opened, with what the kinds of them need.
struct MachineOrder
{
    plclink::Address address;
    std::string map{};            ///< File, of a Modbus device.
    std::string dataFolder{};     ///< Where the samples lie.
    plclink::MqttAccess access{}; ///< Of a machine behind a broker, as the next.
    std::function<void(const std::string& sentence)> log = [](const std::string&) {};
};

/// @return the machine, not started, or why it cannot be opened: a file is missing or damaged.
base::Result<std::unique_ptr<plclink::Source>> OpenMachine(const MachineOrder& order);

/// The statement list of a sample machine.
std::string SampleProgramFile(const std::string& dataFolder, const std::string& name);

} // namespace plchost
