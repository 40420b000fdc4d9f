#include "topics.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace plcremote {

namespace {

constexpr std::string_view root = "plc/";

std::vector<std::string_view> Levels(std::string_view text)
{
    std::vector<std::string_view> levels;
    for (;;) {
        const std::size_t slash = std::min(text.find('/'), text.size());
        levels.push_back(text.substr(0, slash));
        if (slash == text.size()) {
            return levels;
        }
        text.remove_prefix(slash + 1);
    }
}

} // namespace

bool operator==(const Viewer& a, const Viewer& b)
{
    return a.user == b.user && a.window == b.window;
}

bool operator<(const Viewer& a, const Viewer& b)
{
    return std::tie(a.user, a.window) < std::tie(b.user, b.window);
}

std::string MachineTopic(const plclink::MqttAddress& address, std::string_view kind)
{
    return std::string(root) + address.plant + '/' + address.machine + '/' + std::string(kind);
}

std::string
ViewerTopic(const plclink::MqttAddress& address, std::string_view kind, const Viewer& viewer)
{
    return MachineTopic(address, kind) + '/' + viewer.user + '/' + viewer.window;
}

std::optional<Topic> ParseTopic(const plclink::MqttAddress& address, std::string_view text)
{
    const std::string plant = std::string(root) + address.plant + '/';
    if (text.substr(0, plant.size()) != plant) {
        return std::nullopt;
    }
    const auto levels = Levels(text.substr(plant.size()));
    constexpr std::size_t ofMachine = 2;
    constexpr std::size_t ofViewer = 4;
    const bool allAreNames = std::all_of(levels.begin(), levels.end(), [](std::string_view level) {
        return plclink::IsMqttName(level);
    });
    if ((levels.size() != ofMachine && levels.size() != ofViewer) || !allAreNames) {
        return std::nullopt;
    }
    Topic topic{std::string(levels[0]), std::string(levels[1])};
    if (levels.size() == ofViewer) {
        topic.viewer = Viewer{std::string(levels[2]), std::string(levels[3])};
    }
    return topic;
}

} // namespace plcremote
