#include "far_link.h"

#include "received_values.h"

namespace plcremote {

namespace {

using plclink::LinkState;
using plclink::LinkStatus;

/// Of a machine that tells values.
LinkState JudgeServing(const FarLink& link)
{
    // A machine that has started again may be heard before its state.
    const bool isOfThisRun = link.state && link.state->session == link.session;
    if (isOfThisRun && link.state->link.status != LinkStatus::Running) {
        return link.state->link;
    }
    if (!link.refusal.empty()) {
        return {LinkStatus::Refused, link.refusal};
    }
    return {link.late >= silence ? LinkStatus::Slow : LinkStatus::Running};
}

} // namespace

std::optional<LinkState> Judge(const FarLink& link, FarLink::Time now)
{
    if (link.broken) {
        return link.broken;
    }
    if (link.heard && now - *link.heard < silence) {
        return JudgeServing(link);
    }
    if (link.state && link.state->link.status == LinkStatus::Lost) {
        return link.state->link;
    }
    if (now - link.connected < silence) {
        return std::nullopt;
    }
    if (!link.state && !link.heard) {
        return LinkState{
            LinkStatus::Lost, "the broker is there, and no machine of this name has been seen"};
    }
    return LinkState{LinkStatus::Lost, "the broker is there, and the machine says nothing"};
}

} // namespace plcremote
