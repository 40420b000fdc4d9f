#pragma once

#include "mqtt_address.h"
#include "publisher.h"

#include <optional>
#include <string>

// The options of everything that goes over a broker, for the command line of each program. No
// windows.

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace plchost {

/// Adds --ca, --password-file and --insecure.
/// @param access is written when the command line is read.
void AddBrokerOptions(CLI::App& app, plclink::MqttAccess& access);

/// Adds --machines.
/// @param plant is written when the command line is read, with a plant's address.
CLI::Option* AddPlantOption(CLI::App& app, std::string& plant, const std::string& description);

/// What is told to others over a broker.
struct PublishOptions
{
    std::optional<plclink::MqttAddress> address{}; ///< None: nothing.
    std::string allowWrite{};                      ///< Who may write; empty: nobody.
};

/// Adds --publish and --allow-write.
/// @param options are written when the command line is read.
/// @return the option --publish.
CLI::Option* AddPublishOptions(CLI::App& app, PublishOptions& options);

/// @param options with an address.
/// @param listing bytes of the program debug file; empty: none.
/// @param program "plchost" or "plcwatch".
/// @return the order, or what is wrong with the file of who may write.
base::Result<plcremote::PublishOrder> MakePublishOrder(
    const PublishOptions& options,
    const plclink::MqttAccess& access,
    std::string listing,
    const std::string& program);

/// What is wrong with these options where nothing goes over a broker; empty when none is given.
std::string BrokerOptionsError(const plclink::MqttAccess& access);

} // namespace plchost
