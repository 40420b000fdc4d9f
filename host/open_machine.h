#pragma once

#include "address.h"
#include "modbus_map.h"
#include "program.h"
#include "source.h"

#include <memory>
#include <string>

// Machines by their addresses. No windows. Any thread.

namespace plchost {

/// @return an assembled program, or all errors of its source.
base::Result<plc::Program> ReadProgram(const std::string& file);

/// @return the device, not started.
std::unique_ptr<plclink::Source>
OpenDevice(const plclink::ModbusAddress& address, plclink::ModbusMap map);

/// @param mapFile of a Modbus device.
/// @param dataFolder where the samples lie.
/// @return the machine, not started, or why it cannot be opened: a file is missing or damaged.
base::Result<std::unique_ptr<plclink::Source>> OpenMachine(
    const plclink::Address& address, const std::string& mapFile, const std::string& dataFolder);

/// The statement list of a sample machine.
std::string SampleProgramFile(const std::string& dataFolder, const std::string& name);

} // namespace plchost
