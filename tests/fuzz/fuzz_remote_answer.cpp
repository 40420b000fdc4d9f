#include "remote_message.h"

// What a machine answers to a viewer over a broker.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto message = RequireRoundTrip(Text(data, size), &plcremote::ReadAnswer);
    if (!message) {
        return 0;
    }
    if (const auto* const states = std::get_if<plcremote::StepStatesMessage>(&*message)) {
        Require(states->states.size() == plc::CountSteps(states->range), "each step has its state");
    } else if (const auto* const written = std::get_if<plcremote::WrittenMessage>(&*message)) {
        Require(IsLine(written->refusal), "a reason is one line");
    } else if (const auto* const refusal = std::get_if<plcremote::RefusalMessage>(&*message)) {
        Require(IsLine(refusal->reason), "a reason is one line");
    }
    return 0;
}
