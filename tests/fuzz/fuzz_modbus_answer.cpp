#include "fuzz.h"
#include "modbus_pdu.h"

#include <vector>

// What a Modbus device sends: the answer to a request, as a whole and in its frame, or nothing that
// counts.

namespace {

using plclink::ModbusAnswer;
using plclink::ModbusPdu;
using plclink::ModbusTable;

void RequireSense(const ModbusPdu& request, std::size_t count, const ModbusPdu& answer)
{
    const ModbusAnswer read = plclink::AnswerTo(request, answer);
    switch (read.kind) {
    case ModbusAnswer::Kind::Done:
        Require(read.content.size() == count, "an answer has all that was asked for");
        Require(answer.at(0) == request.at(0), "an answer is of the same function");
        break;
    case ModbusAnswer::Kind::Exception:
        Require(answer.size() == 2 && answer[1] == read.exception, "an exception has its number");
        Require(!read.reason.empty(), "an exception has a text");
        break;
    case ModbusAnswer::Kind::Failed:
        Require(
            read.content.empty() && !read.reason.empty(), "a failure has a text and no content");
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::uint8_t> bytes(data, data + size);
    constexpr std::uint16_t transaction = 0x1234;
    constexpr std::uint8_t unit = 1;
    for (const ModbusPdu& answer : {bytes, plclink::InTcpFrame(transaction, unit, bytes)}) {
        for (const ModbusTable table :
             {ModbusTable::Coil, ModbusTable::Discrete, ModbusTable::Input, ModbusTable::Holding}) {
            RequireSense(plclink::ReadRequest(table, {0, 1}), 1, answer);
            RequireSense(plclink::ReadRequest(table, {100, 110}), 10, answer);
        }
        for (const ModbusTable table : {ModbusTable::Coil, ModbusTable::Holding}) {
            RequireSense(plclink::ReplaceRequest(table, {0, 1}, {1}), 0, answer);
            RequireSense(plclink::ReplaceRequest(table, {0, 2}, {1, 0}), 0, answer);
        }
        RequireSense(plclink::MaskRequest(0, 0xFF, 1), 0, answer);
    }
    return 0;
}
