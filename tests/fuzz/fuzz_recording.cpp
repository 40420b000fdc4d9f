#include "bridge.h"
#include "fuzz.h"
#include "machine_link.h"
#include "player.h"
#include "record.h"
#include "recording.h"

// A recording from any source: what is accepted comes back when it is written again, and is played
// to a debugger that asks for everything in it.

namespace {

using plchost::AnswerKind;

class NoDebugger : public plchost::AnswerSink
{
public:
    bool Answer(AnswerKind /*kind*/, const CMD_DATA* answer) override
    {
        Require(answer != nullptr, "an answer is never null");
        return true;
    }
};

std::string Encoded(const plchost::Recording& recording)
{
    std::string bytes = plchost::EncodeRecordingHead();
    bytes += plchost::EncodeEvent({{}, plchost::EventKind::Listing, true, recording.listing});
    for (const plchost::RecordedEvent& event : recording.events) {
        bytes += plchost::EncodeEvent(event);
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto decoded = plchost::DecodeRecording(Text(data, size));
    if (!decoded) {
        return 0;
    }
    const auto again = plchost::DecodeRecording(Encoded(*decoded));
    Require(
        again && again->remark.empty() && Encoded(*again) == Encoded(*decoded),
        "a recording comes back as written");

    NoDebugger debugger;
    auto made = std::make_unique<plchost::Player>(*decoded, 1);
    plchost::Player& player = *made;
    plclink::MachineLink link(std::move(made));
    link.Start();
    plchost::Bridge bridge(debugger, link, {[](const std::string&) {}, [](const std::string&) {}});
    for (const plchost::RecordedEvent& event : decoded->events) {
        if (const auto record = plchost::RecordOf(event.bytes)) {
            bridge.Request(*record);
        }
    }
    player.Advance({});
    player.Advance(plchost::Player::Clock::time_point(plchost::longestRecording));
    Require(player.Position() == player.Length(), "everything is played");
    return 0;
}
