#pragma once

#include "result.h"

#include <cstdint>
#include <string>
#include <string_view>

// Where a machine far away is: a broker, and a name on it. Values. Any thread.

namespace plclink {

struct MqttAddress
{
    bool isEncrypted = true; ///< mqtts, else mqtt.
    std::string user;        ///< Empty: none.
    std::string host;        ///< A name, or a numeric address without brackets.
    std::uint16_t port = 0;
    std::string plant;
    std::string machine; ///< Empty: all of the plant.
};

/// How a broker is trusted, and how it knows us. Files are read at each connection anew.
struct MqttAccess
{
    std::string authorities;  ///< File of certificates; empty: those that the system trusts.
    std::string passwordFile; ///< Empty: no password.
    bool mayBeOpen = false;   ///< mqtt also to other than loopback addresses.
};

/// What an address looks like.
constexpr std::string_view mqttForm = "mqtts://USER@BROKER[:PORT]/PLANT/MACHINE";
constexpr std::string_view mqttPlantForm = "mqtts://USER@BROKER[:PORT]/PLANT";

/// Whether a text is meant as the address of a machine behind a broker.
bool IsMqttAddress(std::string_view text);

/// @return the address of one machine, or what is wrong with it and the right form.
base::Result<MqttAddress> ParseMqttAddress(std::string_view text);

/// @return the address of a plant, or what is wrong with it and the right form.
base::Result<MqttAddress> ParseMqttPlant(std::string_view text);

/// Whether a name can stand in an address and in a topic: a plant, a machine, a user, a window.
bool IsMqttName(std::string_view name);

} // namespace plclink
