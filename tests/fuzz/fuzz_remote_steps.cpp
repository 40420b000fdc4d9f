#include "remote_message.h"

// The range of steps that a viewer asks for over a broker.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto message = RequireRoundTrip(Text(data, size), &plcremote::ReadSteps);
    if (message && message->range) {
        const std::size_t count = plc::CountSteps(*message->range);
        Require(count > 0 && count <= plcremote::mostSteps, "a range is neither empty nor endless");
        Require(message->range->first >= 0, "a step has a number");
    }
    return 0;
}
