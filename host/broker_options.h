#pragma once

#include "mqtt_address.h"

#include <string>

// The options of everything that goes over a broker, for the command line of each program. No
// windows.

namespace CLI {
class App;
}

namespace plchost {

/// Adds --ca, --password-file and --insecure.
/// @param access is written when the command line is read.
void AddBrokerOptions(CLI::App& app, plclink::MqttAccess& access);

/// What is wrong with these options where nothing goes over a broker; empty when none is given.
std::string BrokerOptionsError(const plclink::MqttAccess& access);

} // namespace plchost
