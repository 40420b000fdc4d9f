#include "remote_message.h"

// A write that a viewer asks for over a broker.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto message = RequireRoundTrip(Text(data, size), &plcremote::ReadWrite);
    if (message) {
        Require(plc::Exists(message->operand), "what is written exists");
        Require(
            message->operand.width != plc::Width::Bit || message->value <= 1, "a bit is 0 or 1");
        Require(
            message->operand.width != plc::Width::Byte || message->value <= UINT8_MAX,
            "a value fits a byte");
        Require(
            message->operand.width != plc::Width::Word || message->value <= UINT16_MAX,
            "a value fits a word");
        Require(message->running.count() >= 0, "a machine runs for no negative time");
    }
    return 0;
}
