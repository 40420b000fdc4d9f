#include "fuzz.h"
#include "modbus_address.h"

// The address of a Modbus device: a host or line with a unit, or what is wrong and the right form.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto address = plclink::ParseModbusAddress(Text(data, size));
    if (!address) {
        Require(
            address.Message().find("the right form is modbus") != std::string::npos,
            "what is wrong is told with the right form");
    } else if (const auto* const tcp = std::get_if<plclink::ModbusTcp>(&*address)) {
        Require(!tcp->host.empty() && !tcp->port.empty(), "there is a host and a port");
        Require(tcp->unit >= 0 && tcp->unit <= 255, "the unit is one");
    } else {
        const auto& rtu = std::get<plclink::ModbusRtu>(*address);
        Require(!rtu.device.empty() && rtu.baud > 0, "there is a line and its speed");
        Require(rtu.unit >= 1 && rtu.unit <= 247, "the unit is one");
    }
    return 0;
}
