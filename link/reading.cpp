#include "reading.h"

namespace plclink {

bool operator==(const LinkState& a, const LinkState& b)
{
    return a.status == b.status && a.reason == b.reason;
}

std::string_view StatusText(LinkStatus status)
{
    switch (status) {
    case LinkStatus::Connecting:
        return "connecting";
    case LinkStatus::Running:
        return "running";
    case LinkStatus::Slow:
        return "slow";
    case LinkStatus::Lost:
        return "lost";
    case LinkStatus::Refused:
        return "refused";
    }
    return {};
}

} // namespace plclink
