#include "linkrows.h"

#include "modbus_connection.h"
#include "modbus_source.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace bench {

Device::Device(std::string option) : m_option(std::move(option))
{
    Start("0");
}

void Device::Start(std::string port)
{
    std::vector<std::string> words{"modbus_server.py", "tcp", std::move(port)};
    if (!m_option.empty()) {
        words.push_back(m_option);
    }
    m_server.emplace(words);
    if (m_server->Port().empty()) {
        Complain("the device does not start");
        std::exit(EXIT_FAILURE);
    }
}

plc::Operand OperandAt(std::uint16_t number, plc::Width width)
{
    plc::Operand operand;
    operand.area = plc::Area::DataBlock;
    operand.width = width;
    operand.block = 1;
    operand.address = static_cast<std::uint16_t>(bytesOfRegister * number);
    return operand;
}

std::unique_ptr<plclink::Source> OpenSource(const Device& device, const std::string& settings)
{
    const auto map = plclink::ReadModbusMap(
        "[device]\n" + settings +
        "[range all]\noperands = DB1.DBW0..DB1.DBW1998\ntable = holding\nstart = 0\n");
    const auto address = plclink::ParseModbusAddress("modbus://127.0.0.1:" + device.Port() + "/1");
    return std::make_unique<plclink::ModbusSource>(
        *map.map, plclink::MakeModbusConnection(*address, *map.map));
}

void Complain(const std::string& reason)
{
    if (!reason.empty()) {
        std::fprintf(stderr, "bench: %s\n", reason.c_str());
    }
}

} // namespace bench
