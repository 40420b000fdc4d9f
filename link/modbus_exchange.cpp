#include "modbus_exchange.h"

#include <array>
#include <utility>

namespace plclink {

namespace {

using Kind = ModbusAnswer::Kind;

/// Replaces a register as a whole, because the device cannot replace some of its bits.
ModbusAnswer Rewrite(ModbusExchange& exchange, const ModbusWrite& write)
{
    ModbusAnswer answer = exchange.Read(ModbusTable::Holding, write.span);
    if (answer.kind != Kind::Done) {
        return answer;
    }
    return exchange.Replace(
        ModbusTable::Holding,
        write.span,
        {Masked(answer.content.front(), write.mask, write.content.front())});
}

ModbusAnswer Send(ModbusExchange& exchange, const ModbusRange& range, const ModbusWrite& write)
{
    if (write.kind == ModbusWrite::Kind::Replace) {
        return exchange.Replace(range.table, write.span, write.content);
    }
    if (range.isRewritten) {
        return Rewrite(exchange, write);
    }
    ModbusAnswer answer = exchange.Mask(write.span.begin, write.mask, write.content.front());
    if (answer.kind == Kind::Exception && answer.exception == illegalFunction) {
        answer.reason = "the device has no mask write (function 22); bits-by = read-modify-write "
                        "in the range " +
                        range.name + " allows to read the register and write it back";
    }
    return answer;
}

ModbusWritten Ended(const std::string& what, const ModbusAnswer& answer)
{
    return {
        base::Failure{what + answer.reason},
        std::nullopt,
        answer.kind == Kind::Failed ? answer.reason : std::string()};
}

/// The bits of a value that an operand has.
std::uint32_t Fitting(const plc::Operand& operand, std::uint32_t value)
{
    constexpr std::uint64_t one = 1;
    const std::uint32_t bits =
        operand.width == plc::Width::Bit ? 1 : plc::ByteCount(operand.width) * bitsOfByte;
    return static_cast<std::uint32_t>(value & ((one << bits) - 1));
}

} // namespace

ModbusAnswer ExceptionAnswer(int exception)
{
    constexpr std::array<const char*, 12> names = {
        "",
        "illegal function",
        "illegal data address",
        "illegal data value",
        "device failure",
        "accepted, but not done yet",
        "device busy",
        "not done",
        "memory parity error",
        "",
        "no gateway path",
        "the device behind the gateway does not answer"};
    const auto number = static_cast<std::size_t>(exception);
    const std::string name = number < names.size() ? names.at(number) : "";
    return {
        Kind::Exception,
        exception,
        "the device answers with exception " + std::to_string(exception) +
            (name.empty() ? name : " (" + name + ")"),
        {}};
}

ModbusWritten WriteConfirmed(
    ModbusExchange& exchange,
    const ModbusRange& range,
    const plc::Operand& operand,
    std::uint32_t value)
{
    const std::string name = plc::OperandName(operand);
    const auto write = WriteOf(range, operand, value);
    if (!write) {
        return {base::Failure{write.Message()}};
    }
    const ModbusAnswer sent = Send(exchange, range, *write);
    if (sent.kind != Kind::Done) {
        const bool isUnknown = sent.kind == Kind::Failed;
        return Ended(name + (isUnknown ? " is not confirmed: " : " is not written: "), sent);
    }
    const auto asked = Clock::now();
    const ModbusAnswer answer = exchange.Read(range.table, write->span);
    if (answer.kind != Kind::Done) {
        return Ended(name + " is not confirmed: ", answer);
    }
    const Reading reading{ValueIn(range, operand, answer.content), asked};
    const std::uint32_t wanted = Fitting(operand, value);
    if (reading.value != wanted) {
        return {
            base::Failure{
                name + " is not confirmed: it is " + std::to_string(reading.value) +
                " after it was set to " + std::to_string(wanted)},
            reading};
    }
    return {{}, reading};
}

} // namespace plclink
