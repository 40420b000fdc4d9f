#pragma once

#include "reading.h"
#include "texts.h"

#include <glibmm/ustring.h>

// The lamp that says how well a machine is reached. Any thread.

namespace plchost {

/// @return markup, for a label or a cell.
Glib::ustring LampMarkup(const HostTexts& texts, plclink::LinkStatus status);

} // namespace plchost
