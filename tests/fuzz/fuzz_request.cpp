#include "fuzz.h"
#include "record.h"

#include <algorithm>
#include <cstring>

// A record that the reference host takes apart, request or answer: read no further than it goes.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CMD_DATA record{};
    if (size > 0) {
        std::memcpy(&record, data, std::min(size, sizeof record));
    }
    for (const std::uint16_t command : {record.command, std::uint16_t{PLC_CMD_WRITE_VAR}}) {
        record.command = command;
        Require(plchost::OperandOf(record).size() <= sizeof record.payload, "a name ends");
    }
    static_cast<void>(PlcArgumentOfDelete(&record));
    if (const auto steps = plchost::RequestedSteps(record)) {
        static_cast<void>(plc::CountSteps(*steps));
    }
    Require(
        plchost::AnsweredStates(record).size() <= PLC_MAX_STEPS, "the states of an answer fit it");
    return 0;
}
