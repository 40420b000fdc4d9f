#include "remote_message.h"

// What a machine says of itself over a broker.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto state = RequireRoundTrip(Text(data, size), &plcremote::ReadState);
    if (state) {
        Require(IsLine(state->link.reason), "a reason is one line");
        Require(IsLine(state->version), "a version is one line");
        for (const std::string& line : state->writable) {
            Require(IsLine(line), "what may be written is a line each");
        }
    }
    return 0;
}
