#include "address.h"
#include "fuzz.h"
#include "sample_machines.h"

// The address of a machine from any source: it is taken apart without a loss, or refused with
// words.

namespace {

std::string TextOf(const plclink::Address& address)
{
    if (const auto* const sample = std::get_if<plclink::SampleAddress>(&address)) {
        Require(samples::FindSampleMachine(sample->name) != nullptr, "a sample is known");
        return "soft:" + sample->name;
    }
    if (const auto* const program = std::get_if<plclink::ProgramAddress>(&address)) {
        return "soft:" + program->file;
    }
    return "recording:" + std::get<plclink::RecordingAddress>(address).file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(Text(data, size));
    const auto address = plclink::ParseAddress(text);
    if (address && std::holds_alternative<plclink::ModbusAddress>(*address)) {
        Require(plclink::IsModbusAddress(text), "a device has the address of one");
    } else if (address) {
        Require(TextOf(*address) == text, "an address is taken apart without a loss");
    } else {
        Require(address.Message().find(text) != std::string::npos, "a refusal names the address");
    }
    return 0;
}
