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

/// What an address looks like.
constexpr std::string_view modbusTcpForm = "modbus://HOST[:PORT]/UNIT";
constexpr std::string_view modbusRtuForm = "modbus-rtu:DEVICE?baud=19200&parity=E&stop=1&unit=1";

/// Whether a text is meant as the address of a Modbus device.
bool IsModbusAddress(std::string_view text);

/// Reads one of the two forms: a numeric address of version 6 stands in brackets, each setting of a
/// serial line is as it is in the form when it is not given.
/// @return the address, or what is wrong with it and the right form.
base::Result<ModbusAddress> ParseModbusAddress(std::string_view text);

} // namespace plclink
