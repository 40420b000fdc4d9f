#pragma once

#include "mqtt_address.h"

#include <optional>
#include <string>
#include <string_view>

// The topics of a machine: plc/PLANT/MACHINE/state and so on. Values. Any thread.

namespace plcremote {

/// Who asks: a user may have several windows.
struct Viewer
{
    std::string user;
    std::string window;
};

bool operator==(const Viewer& a, const Viewer& b);
bool operator<(const Viewer& a, const Viewer& b);

/// A topic below that of a machine, taken apart.
struct Topic
{
    std::string machine;
    std::string kind;               ///< "state", "values", "watch" and so on.
    std::optional<Viewer> viewer{}; ///< Of the kinds that have one.
};

/// plc/PLANT/MACHINE/KIND. @param machine may be "+", for all.
std::string MachineTopic(const plclink::MqttAddress& address, std::string_view kind);

/// plc/PLANT/MACHINE/KIND/USER/WINDOW; "+" stands for any user or window.
std::string
ViewerTopic(const plclink::MqttAddress& address, std::string_view kind, const Viewer& viewer);

/// @return nothing for what is no topic of this plant.
std::optional<Topic> ParseTopic(const plclink::MqttAddress& address, std::string_view text);

} // namespace plcremote
