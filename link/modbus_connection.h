#pragma once

#include "modbus_address.h"
#include "modbus_exchange.h"

#include <memory>

// Connections with Modbus devices, by libmodbus.

namespace plclink {

/// @param map its limits hold for the connection; the first address of its first range is read when
///        a serial line is opened.
std::unique_ptr<ModbusExchange>
MakeModbusConnection(const ModbusAddress& address, const ModbusMap& map);

} // namespace plclink
