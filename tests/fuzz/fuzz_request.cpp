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
    Require(plchost::ReadOperand(record).size() <= sizeof record.payload, "a name ends");
    Require(plchost::WriteOperand(record).operand.size() <= sizeof record.payload, "a name ends");
    static_cast<void>(plchost::DeleteArgument(record));
    if (const auto steps = plchost::RequestedSteps(record)) {
        static_cast<void>(plchost::CountSteps(*steps));
    }
    Require(
        plchost::AnsweredStates(record).size() <= plchost::maxStepsInAnswer,
        "the states of an answer fit it");
    return 0;
}
