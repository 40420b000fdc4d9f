#include "request_rule.h"

#include "record.h"
#include "trace.h"

namespace plccheck {

namespace {

/// The length that the word of a request has to state; 0 for an unknown command.
std::size_t LengthOf(const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return PLC_READ_OPERAND_AT + plchost::OperandOf(request).size() + 1;
    case PLC_CMD_WRITE_VAR:
        return PLC_WRITE_OPERAND_AT + plchost::OperandOf(request).size() + 1;
    case PLC_CMD_DELETE_VAR:
        return PLC_DELETE_REQUEST_SIZE;
    case PLC_CMD_PRG_STATE:
        return PLC_PRG_STATE_REQUEST_SIZE;
    default:
        return 0;
    }
}

} // namespace

base::Result<void> CheckRequest(const CMD_DATA& request)
{
    const std::size_t length = LengthOf(request);
    const std::string words = "the request \"" + plchost::DescribeRequest(request) + "\"";
    if (length == 0) {
        return base::Failure{words + " has no known command word"};
    }
    if (length != request.length) {
        return base::Failure{
            words + " states " + std::to_string(request.length) + " bytes and has " +
            std::to_string(length)};
    }
    if (request.command == PLC_CMD_READ_VAR && plchost::OperandOf(request).empty()) {
        return base::Failure{words + " names no operand"};
    }
    if (request.command == PLC_CMD_DELETE_VAR &&
        PlcArgumentOfDelete(&request) != PLC_DELETE_ARG_START &&
        PlcArgumentOfDelete(&request) != PLC_DELETE_ARG_RELEASE) {
        return base::Failure{words + " neither starts nor releases a variable"};
    }
    const auto steps =
        request.command == PLC_CMD_PRG_STATE ? plchost::RequestedSteps(request) : std::nullopt;
    if (steps && plc::CountSteps(*steps) != request.key) {
        return base::Failure{words + " counts " + std::to_string(request.key) + " steps"};
    }
    return {};
}

} // namespace plccheck
