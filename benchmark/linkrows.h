#pragma once

#include "modbusserver.h"
#include "source.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

// What the rows of the link measure with: a Modbus device that others have written. One thread.

namespace bench {

using Seconds = std::chrono::duration<double>;

constexpr std::uint32_t bytesOfRegister = 2;

/// How long 1,000 registers of one range take.
void BlockRow();

/// A device. Ends the program when it does not start.
class Device
{
public:
    /// @param option of the server; may be empty.
    explicit Device(std::string option);

    const std::string& Port() const { return m_server->Port(); }

    void Signal(int signal) { m_server->Process().Signal(signal); }

    void Kill() { m_server->Process().Kill(); }

    /// Has it back at the same port when it returns.
    void StartAgain() { Start(Port()); }

private:
    void Start(std::string port);

    const std::string m_option;
    std::optional<ModbusServer> m_server;
};

/// The operand of data block 1 that begins at a register.
plc::Operand OperandAt(std::uint16_t number, plc::Width width);

/// @param settings lines of the map's section of the device.
/// @return data block 1, which begins at the device's register 0.
std::unique_ptr<plclink::Source> OpenSource(const Device& device, const std::string& settings);

/// Says on standard error what is wrong, unless nothing is.
void Complain(const std::string& reason);

} // namespace bench
