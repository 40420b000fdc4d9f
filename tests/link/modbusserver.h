#pragma once

#include "child.h"

#include <string>
#include <vector>

/// One of the servers in this folder, which has said that it is ready.
class ModbusServer
{
public:
    /// @param arguments the script and its words.
    explicit ModbusServer(const std::vector<std::string>& arguments);

    /// @return empty when the server did not start.
    const std::string& Port() const { return m_port; }

    Child& Process() { return m_child; }

private:
    Child m_child;
    std::string m_port;
};
