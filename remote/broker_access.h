#pragma once

#include "mqtt_address.h"
#include "result.h"

#include <string>

// How a broker may be gone to. Any thread.

namespace plcremote {

/// @return the first line of a file that nobody but its owner can read, or why not.
base::Result<std::string> ReadPasswordFile(const std::string& file);

/// Why mqtt (without encryption) may not go to this host; empty when it may.
/// Only loopback addresses may, unless MqttAccess::mayBeOpen.
std::string OpenAccessError(const plclink::MqttAddress& address, const plclink::MqttAccess& access);

} // namespace plcremote
