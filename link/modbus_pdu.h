#pragma once

#include "modbus_exchange.h"

#include <cstdint>
#include <vector>

// What a request and its answer are made of, on every kind of wire. An answer counts only when all
// of it fits the request. Values. Any thread.

namespace plclink {

/// A function and its data, without what carries them.
using ModbusPdu = std::vector<std::uint8_t>;

ModbusPdu ReadRequest(ModbusTable table, const ModbusSpan& span);
ModbusPdu ReplaceRequest(
    ModbusTable table, const ModbusSpan& span, const std::vector<std::uint16_t>& content);
ModbusPdu MaskRequest(std::uint32_t address, std::uint16_t mask, std::uint16_t content);

/// @return what the answer says; a failure when it is not one to this request.
ModbusAnswer AnswerTo(const ModbusPdu& request, const ModbusPdu& answer);

/// A request as it is sent over the network.
std::vector<std::uint8_t>
TcpFrame(std::uint16_t transaction, std::uint8_t unit, const ModbusPdu& request);

/// @return the answer in a frame; empty when the frame is not one to this transaction and unit.
ModbusPdu
InTcpFrame(std::uint16_t transaction, std::uint8_t unit, const std::vector<std::uint8_t>& frame);

} // namespace plclink
