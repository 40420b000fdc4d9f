#include "mqtt_address.h"

#include "host_and_port.h"

#include <algorithm>
#include <utility>

namespace plclink {

namespace {

constexpr std::string_view encryptedScheme = "mqtts://";
constexpr std::string_view openScheme = "mqtt://";
constexpr std::uint16_t encryptedPort = 8883;
constexpr std::uint16_t openPort = 1883;
constexpr std::size_t longestName = 64;
constexpr const char* nameRule = R"( is 1 to 64 letters, digits, "-", "_" and ".")";

bool HasPrefix(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

/// The text up to the first slash, which is taken away as well.
std::string_view TakePart(std::string_view& text)
{
    const std::string_view part = text.substr(0, text.find('/'));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
}

/// The text as it may be shown: without what stands where other addresses have a password.
std::string Shown(std::string_view text)
{
    const std::size_t at = text.rfind('@');
    const std::size_t colon = text.find(':', std::min(text.find("//"), text.size()));
    if (at == std::string_view::npos || colon > at) {
        return std::string(text);
    }
    return std::string(text.substr(0, colon)) + ":..." + std::string(text.substr(at));
}

/// Everything but the names of plant and machine.
/// @param names what stands where they do.
base::Result<MqttAddress> ParseBroker(std::string_view text, std::string_view& names)
{
    MqttAddress address;
    address.isEncrypted = HasPrefix(text, encryptedScheme);
    if (!address.isEncrypted && !HasPrefix(text, openScheme)) {
        return base::Failure{"this is no address behind a broker"};
    }
    names = text.substr(address.isEncrypted ? encryptedScheme.size() : openScheme.size());
    std::string_view broker = TakePart(names);
    if (const std::size_t at = broker.find('@'); at != std::string_view::npos) {
        address.user = broker.substr(0, at);
        broker.remove_prefix(at + 1);
        if (address.user.find(':') != std::string::npos) {
            return base::Failure{"a password stands in a file only (--password-file)"};
        }
        if (!IsMqttName(address.user)) {
            return base::Failure{std::string("a user") + nameRule};
        }
    }
    auto place = ParseHostAndPort(broker, address.isEncrypted ? encryptedPort : openPort);
    if (!place) {
        return base::Failure{place.Message()};
    }
    address.host = std::move(place->host);
    address.port = place->port;
    return address;
}

base::Result<MqttAddress> Parse(std::string_view text, bool hasMachine)
{
    std::string_view names;
    auto address = ParseBroker(text, names);
    std::string wrong = address ? "" : address.Message();
    if (address) {
        address->plant = TakePart(names);
        address->machine = hasMachine ? TakePart(names) : "";
        if (!IsMqttName(address->plant)) {
            wrong = std::string("a plant") + nameRule;
        } else if (hasMachine && !IsMqttName(address->machine)) {
            wrong = std::string("a machine") + nameRule;
        } else if (!names.empty() || text.back() == '/') {
            wrong = "there is too much behind the names";
        }
    }
    if (wrong.empty()) {
        return address;
    }
    return base::Failure{
        '"' + Shown(text) + "\": " + wrong + "; the right form is " +
        std::string(hasMachine ? mqttForm : mqttPlantForm)};
}

} // namespace

bool IsMqttAddress(std::string_view text)
{
    return HasPrefix(text, "mqtts:") || HasPrefix(text, "mqtt:");
}

base::Result<MqttAddress> ParseMqttAddress(std::string_view text)
{
    return Parse(text, true);
}

base::Result<MqttAddress> ParseMqttPlant(std::string_view text)
{
    return Parse(text, false);
}

bool IsMqttName(std::string_view name)
{
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "0123456789-_.";
    return !name.empty() && name.size() <= longestName &&
           name.find_first_not_of(allowed) == std::string_view::npos;
}

} // namespace plclink
