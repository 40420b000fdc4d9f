#pragma once

#include "modbus_place.h"
#include "reading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Requests to a Modbus device, whatever carries them, and the write that is confirmed by reading
// back. The thread that asks the device.

namespace plclink {

/// What came of a request.
struct ModbusAnswer
{
    enum class Kind : std::uint8_t
    {
        Done,
        Exception, ///< The device has answered that it will not.
        Failed ///< No answer, or none that belongs to the request: nothing that comes now can be
               ///< trusted until the connection is a new one.
    };

    Kind kind = Kind::Failed;
    int exception = 0;
    std::string reason{};                 ///< Unless it is done.
    std::vector<std::uint16_t> content{}; ///< Registers, or bits of 0 and 1.
};

/// Exceptions of the protocol that are not all alike.
constexpr int illegalFunction = 1;
constexpr int illegalAddress = 2;
constexpr int illegalValue = 3;

/// @param exception of the protocol.
ModbusAnswer ExceptionAnswer(int exception);

/// A connection with a device. Only Interrupt() may be called on another thread.
class ModbusExchange
{
public:
    ModbusExchange() = default;
    virtual ~ModbusExchange() = default;
    ModbusExchange(const ModbusExchange&) = delete;
    ModbusExchange(ModbusExchange&&) = delete;
    ModbusExchange& operator=(const ModbusExchange&) = delete;
    ModbusExchange& operator=(ModbusExchange&&) = delete;

    /// @return why there is no connection.
    virtual base::Result<void> Open() = 0;
    /// Also when nothing is open.
    virtual void Close() = 0;
    /// Lets what is under way fail soon, and all that follows at once.
    virtual void Interrupt() = 0;

    /// @return why the connection cannot be used any more, as far as is known without a request.
    virtual base::Result<void> Check() = 0;

    /// @return as many registers or bits as the span has, when it is done.
    virtual ModbusAnswer Read(ModbusTable table, const ModbusSpan& span) = 0;
    virtual ModbusAnswer Replace(
        ModbusTable table, const ModbusSpan& span, const std::vector<std::uint16_t>& content) = 0;
    /// Replaces the bits of the mask in a holding register.
    virtual ModbusAnswer Mask(std::uint32_t address, std::uint16_t mask, std::uint16_t content) = 0;
};

/// The end of a write.
struct ModbusWritten
{
    base::Result<void> done{};        ///< Confirmed, or why not.
    std::optional<Reading> reading{}; ///< What was read back.
    std::string failure{};            ///< Why the connection has to be a new one, if so.
};

/// Writes an operand and reads it back.
ModbusWritten WriteConfirmed(
    ModbusExchange& exchange,
    const ModbusRange& range,
    const plc::Operand& operand,
    std::uint32_t value);

} // namespace plclink
