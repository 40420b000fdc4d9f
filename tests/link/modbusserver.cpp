#include "modbusserver.h"

namespace {

std::vector<std::string> Command(const std::vector<std::string>& arguments)
{
    // The system's own, for which pymodbus is installed.
    std::vector<std::string> command{"/usr/bin/python3", LINK_TESTS "/" + arguments.at(0)};
    command.insert(command.end(), arguments.begin() + 1, arguments.end());
    return command;
}

} // namespace

ModbusServer::ModbusServer(const std::vector<std::string>& arguments) : m_child(Command(arguments))
{
    const std::string ready = m_child.WaitForLine("ready ");
    m_port = ready.substr(ready.find(' ') + 1);
}
