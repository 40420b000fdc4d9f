#include "received_values.h"
#include "remote_message.h"

// Values that a machine tells over a broker: taken by a viewer, they are never of a time to come.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto message = RequireRoundTrip(Text(data, size), &plcremote::ReadValues);
    if (!message) {
        return 0;
    }
    plclink::WatchList list;
    for (const plcremote::RemoteValue& value : message->values) {
        Require(plc::Exists(value.operand), "an operand exists");
        Require(IsLine(value.refusal), "a reason is one line");
        list.push_back(value.operand);
    }
    plcremote::ReceivedValues received;
    const plclink::Clock::time_point came{std::chrono::hours(1)};
    Require(received.Take(*message, came), "the first message is of use");
    for (const plclink::PlacedReading& placed : received.Readings(list)) {
        Require(placed.place < list.size(), "a reading is of the list");
        Require(placed.reading.taken <= came, "a reading is not of a time to come");
    }
    Require(!received.Take(*message, came), "no message counts twice");
    return 0;
}
