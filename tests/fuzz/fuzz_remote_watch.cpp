#include "remote_message.h"
#include "viewers.h"

// What a viewer asks for over a broker: it is served, or refused and watches nothing.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto message = RequireRoundTrip(Text(data, size), &plcremote::ReadWatch);
    if (!message) {
        return 0;
    }
    plcremote::Viewers viewers;
    const auto served = viewers.Watch({"service", "w1"}, message->operands, {});
    const auto operands = viewers.Operands();
    Require(served || operands.empty(), "who is refused watches nothing");
    Require(operands.size() <= plcremote::mostOperands, "there are not more operands than served");
    Require(std::all_of(operands.begin(), operands.end(), &plc::Exists), "what is watched exists");
    return 0;
}
