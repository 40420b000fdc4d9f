#include "request_rule.h"

#include "record.h"
#include "trace.h"

namespace plccheck {

namespace {

constexpr std::size_t readNameAt = 6;
constexpr std::size_t writeNameAt = 10;
constexpr std::size_t deleteLength = 8;
constexpr std::size_t stateLength = 14;

/// The length that the word of a request has to state; 0 for an unknown command.
std::size_t LengthOf(const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return readNameAt + plchost::ReadOperand(request).size() + 1;
    case PLC_CMD_WRITE_VAR:
        return writeNameAt + plchost::WriteOperand(request).operand.size() + 1;
    case PLC_CMD_DELETE_VAR:
        return deleteLength;
    case PLC_CMD_PRG_STATE:
        return stateLength;
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
    if (request.command == PLC_CMD_READ_VAR && plchost::ReadOperand(request).empty()) {
        return base::Failure{words + " names no operand"};
    }
    const auto steps =
        request.command == PLC_CMD_PRG_STATE ? plchost::RequestedSteps(request) : std::nullopt;
    if (steps && plchost::CountSteps(*steps) != request.key) {
        return base::Failure{words + " counts " + std::to_string(request.key) + " steps"};
    }
    return {};
}

} // namespace plccheck
