#include "lamp.h"

#include "link_view.h"
#include "looks.h"

namespace plchost {

namespace {

const char* LampColour(plclink::LinkStatus status)
{
    switch (status) {
    case plclink::LinkStatus::Running:
        return goodColour;
    case plclink::LinkStatus::Slow:
        return lateColour;
    case plclink::LinkStatus::Lost:
    case plclink::LinkStatus::Refused:
        return badColour;
    case plclink::LinkStatus::Connecting:
        break;
    }
    return idleColour;
}

} // namespace

Glib::ustring LampMarkup(const HostTexts& texts, plclink::LinkStatus status)
{
    return Badge(StatusWord(texts, status), LampColour(status));
}

} // namespace plchost
