#include "modbus_pdu.h"

#include <algorithm>

namespace plclink {

namespace {

enum Function : std::uint8_t
{
    readCoils = 1,
    readDiscretes = 2,
    readHoldings = 3,
    readInputs = 4,
    writeCoil = 5,
    writeRegister = 6,
    writeCoils = 15,
    writeRegisters = 16,
    maskRegister = 22
};

constexpr std::uint8_t exceptionMark = 0x80;
constexpr std::size_t tcpHeader = 7; ///< The last byte of it is the unit, which the length counts.

void AddWord(std::vector<std::uint8_t>& bytes, std::uint32_t word)
{
    bytes.push_back(static_cast<std::uint8_t>(word >> bitsOfByte & byteMask));
    bytes.push_back(static_cast<std::uint8_t>(word & byteMask));
}

std::uint16_t WordAt(const std::vector<std::uint8_t>& bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(bytes.at(at) << bitsOfByte | bytes.at(at + 1));
}

std::uint8_t ReadFunction(ModbusTable table)
{
    switch (table) {
    case ModbusTable::Coil:
        return readCoils;
    case ModbusTable::Discrete:
        return readDiscretes;
    case ModbusTable::Input:
        return readInputs;
    case ModbusTable::Holding:
        break;
    }
    return readHoldings;
}

bool IsRead(std::uint8_t function)
{
    return function >= readCoils && function <= readInputs;
}

bool IsOfBits(std::uint8_t function)
{
    return function == readCoils || function == readDiscretes;
}

ModbusAnswer Foreign()
{
    return {
        ModbusAnswer::Kind::Failed, 0, "an answer is damaged or belongs to another request", {}};
}

/// The registers or bits behind the head of an answer.
std::vector<std::uint16_t> ContentOf(const ModbusPdu& answer, std::size_t count, bool isOfBits)
{
    std::vector<std::uint16_t> content;
    for (std::size_t i = 0; i < count; ++i) {
        content.push_back(
            isOfBits
                ? static_cast<std::uint16_t>(answer.at(2 + i / bitsOfByte) >> (i % bitsOfByte) & 1)
                : WordAt(answer, 2 + 2 * i));
    }
    return content;
}

ModbusAnswer ReadAnswer(const ModbusPdu& request, const ModbusPdu& answer)
{
    constexpr std::size_t countAt = 3;
    const std::size_t count = WordAt(request, countAt);
    const bool isOfBits = IsOfBits(request.front());
    const std::size_t bytes = isOfBits ? (count + bitsOfByte - 1) / bitsOfByte : 2 * count;
    if (answer.size() != 2 + bytes || answer.at(1) != bytes) {
        return Foreign();
    }
    return {ModbusAnswer::Kind::Done, 0, {}, ContentOf(answer, count, isOfBits)};
}

} // namespace

ModbusPdu ReadRequest(ModbusTable table, const ModbusSpan& span)
{
    ModbusPdu request{ReadFunction(table)};
    AddWord(request, span.begin);
    AddWord(request, span.Count());
    return request;
}

ModbusPdu
ReplaceRequest(ModbusTable table, const ModbusSpan& span, const std::vector<std::uint16_t>& content)
{
    constexpr std::uint32_t on = 0xFF00;
    const bool hasRegisters = HasRegisters(table);
    if (content.size() == 1) {
        ModbusPdu request{hasRegisters ? writeRegister : writeCoil};
        AddWord(request, span.begin);
        AddWord(request, hasRegisters ? content.front() : content.front() * on);
        return request;
    }
    ModbusPdu request{hasRegisters ? writeRegisters : writeCoils};
    AddWord(request, span.begin);
    AddWord(request, span.Count());
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < content.size(); ++i) {
        if (hasRegisters) {
            AddWord(bytes, content[i]);
            continue;
        }
        if (i % bitsOfByte == 0) {
            bytes.push_back(0);
        }
        bytes.back() = static_cast<std::uint8_t>(bytes.back() | content[i] << i % bitsOfByte);
    }
    request.push_back(static_cast<std::uint8_t>(bytes.size()));
    request.insert(request.end(), bytes.begin(), bytes.end());
    return request;
}

ModbusPdu MaskRequest(std::uint32_t address, std::uint16_t mask, std::uint16_t content)
{
    ModbusPdu request{maskRegister};
    AddWord(request, address);
    AddWord(request, ~static_cast<std::uint32_t>(mask));
    AddWord(request, content & mask);
    return request;
}

ModbusAnswer AnswerTo(const ModbusPdu& request, const ModbusPdu& answer)
{
    const std::uint8_t function = request.front();
    if (answer.size() == 2 && answer.front() == (function | exceptionMark) && answer[1] != 0) {
        return ExceptionAnswer(answer[1]);
    }
    if (answer.size() < 2 || answer.front() != function) {
        return Foreign();
    }
    if (IsRead(function)) {
        return ReadAnswer(request, answer);
    }
    // A write is answered by its address, and its value or count.
    constexpr std::size_t head = 5;
    const std::size_t echoed = function == maskRegister ? request.size() : head;
    const bool isEcho =
        answer.size() == echoed && std::equal(answer.begin(), answer.end(), request.begin());
    return isEcho ? ModbusAnswer{ModbusAnswer::Kind::Done, 0, {}, {}} : Foreign();
}

std::vector<std::uint8_t>
TcpFrame(std::uint16_t transaction, std::uint8_t unit, const ModbusPdu& request)
{
    std::vector<std::uint8_t> frame;
    AddWord(frame, transaction);
    AddWord(frame, 0); // the protocol
    AddWord(frame, static_cast<std::uint32_t>(request.size() + 1));
    frame.push_back(unit);
    frame.insert(frame.end(), request.begin(), request.end());
    return frame;
}

ModbusPdu
InTcpFrame(std::uint16_t transaction, std::uint8_t unit, const std::vector<std::uint8_t>& frame)
{
    if (frame.size() < tcpHeader) {
        return {};
    }
    const ModbusPdu answer(frame.begin() + tcpHeader, frame.end());
    const std::vector<std::uint8_t> wanted = TcpFrame(transaction, unit, answer);
    return frame == wanted ? answer : ModbusPdu{};
}

} // namespace plclink
