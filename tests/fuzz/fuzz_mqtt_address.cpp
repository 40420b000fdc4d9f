#include "fuzz.h"
#include "mqtt_address.h"

// The address of a machine or a plant behind a broker, or what is wrong and the right form.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (const auto& address :
         {plclink::ParseMqttAddress(Text(data, size)), plclink::ParseMqttPlant(Text(data, size))}) {
        if (!address) {
            Require(
                address.Message().find("the right form is mqtts://") != std::string::npos,
                "what is wrong is told with the right form");
            continue;
        }
        Require(!address->host.empty() && address->port != 0, "there is a broker");
        Require(plclink::IsMqttName(address->plant), "the plant can stand in a topic");
        Require(
            address->machine.empty() || plclink::IsMqttName(address->machine),
            "the machine can stand in a topic");
        Require(
            address->user.empty() || plclink::IsMqttName(address->user),
            "the user can stand in a topic");
    }
    return 0;
}
