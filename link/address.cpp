#include "address.h"

#include "sample_machines.h"

#include <string_view>
#include <utility>

namespace plclink {

namespace {

std::string SampleNames()
{
    std::string names;
    for (const samples::SampleMachine& machine : samples::SampleMachines()) {
        names += (names.empty() ? "" : ", ") + std::string(machine.name);
    }
    return names;
}

/// A path, which no name of a sample looks like.
bool IsFile(std::string_view text)
{
    return text.find_first_of("./") != std::string_view::npos;
}

} // namespace

std::string AddressForms()
{
    return "soft:NAME with one of " + SampleNames() +
           "; soft:FILE.il; recording:FILE; with --map " + std::string(modbusTcpForm) + ", " +
           std::string(modbusRtuForm) + "; " + std::string(mqttForm);
}

base::Result<Address> ParseAddress(const std::string& text)
{
    if (IsModbusAddress(text)) {
        auto device = ParseModbusAddress(text);
        return device ? base::Result<Address>(*std::move(device)) : base::Failure{device.Message()};
    }
    if (IsMqttAddress(text)) {
        auto machine = ParseMqttAddress(text);
        return machine ? base::Result<Address>(*std::move(machine))
                       : base::Failure{machine.Message()};
    }
    const std::size_t colon = text.find(':');
    const std::string scheme = text.substr(0, colon);
    const std::string rest = colon == std::string::npos ? "" : text.substr(colon + 1);
    if (rest.empty() || (scheme != "soft" && scheme != "recording")) {
        return base::Failure{'"' + text + "\" is no address of a machine (" + AddressForms() + ')'};
    }
    if (scheme == "recording") {
        return Address(RecordingAddress{rest});
    }
    if (IsFile(rest)) {
        return Address(ProgramAddress{rest});
    }
    if (samples::FindSampleMachine(rest) == nullptr) {
        return base::Failure{"there is no machine \"soft:" + rest + "\" (" + AddressForms() + ')'};
    }
    return Address(SampleAddress{rest});
}

std::string AddressError(const std::string& text)
{
    const auto address = ParseAddress(text);
    return address ? "" : address.Message();
}

std::string MapError(const std::string& address, const std::string& map)
{
    if (IsModbusAddress(address) == !map.empty()) {
        return "";
    }
    return '"' + address +
           (map.empty() ? "\" needs a map of its operands: --map FILE"
                        : "\" needs no map, a Modbus device does");
}

} // namespace plclink
