#pragma once

#include "result.h"

#include <string>
#include <string_view>
#include <variant>

// How a Modbus device is reached. Values. Any thread.

namespace plclink {

/// Over the network.
struct ModbusTcp
{
    std::string host; ///< A name, or a numeric address without brackets.
    std::string port;
    int unit = 0;
};

/// Over a serial line.
struct ModbusRtu
{
    std::string device; ///< The file of the line.
    int baud = 0;
    char parity = 'E'; ///< N, E or O.
    int stopBits = 1;
    int unit = 0;
};

using ModbusAddress = std::variant<ModbusTcp, ModbusRtu>;

/// Whether a text is meant as the address of a Modbus device.
bool IsModbusAddress(std::string_view text);

/// Reads "modbus://HOST[:PORT]/UNIT", a numeric address of version 6 in brackets, or
/// "modbus-rtu:DEVICE?baud=19200&parity=E&stop=1&unit=1", each of these four as it is here when it
/// is not given.
/// @return the address, or what is wrong with it and the right form.
base::Result<ModbusAddress> ParseModbusAddress(std::string_view text);

} // namespace plclink
