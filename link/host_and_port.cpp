#include "host_and_port.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace plclink {

base::Result<HostAndPort> ParseHostAndPort(std::string_view text, std::uint16_t usualPort)
{
    HostAndPort parsed{"", usualPort};
    std::string_view port;
    if (!text.empty() && text.front() == '[') {
        const std::size_t end = text.find(']');
        if (end == std::string_view::npos) {
            return base::Failure{"the bracket is not closed"};
        }
        parsed.host = text.substr(1, end - 1);
        port = text.substr(end + 1);
    } else {
        const std::size_t colon = std::min(text.find(':'), text.size());
        parsed.host = text.substr(0, colon);
        port = text.substr(colon);
        if (port.find(':', 1) != std::string_view::npos) {
            return base::Failure{"an address with several colons stands in brackets, as in [::1]"};
        }
    }
    if (parsed.host.empty()) {
        return base::Failure{"there is no host"};
    }
    if (port.empty()) {
        return parsed;
    }
    const char* const end = port.data() + port.size();
    const auto [stop, error] = std::from_chars(port.data() + 1, end, parsed.port);
    if (port.front() != ':' || error != std::errc() || stop != end || parsed.port == 0) {
        return base::Failure{
            "the port is a number from 1 to " +
            std::to_string(std::numeric_limits<std::uint16_t>::max())};
    }
    return parsed;
}

} // namespace plclink
