#pragma once

#include <glib.h>

#include <string>

// What the toolkits complain about in GLib's log. Any thread.

namespace plccheck {

/// @param level, fields, count an entry of the log, as a writer function gets it.
/// @return "domain: words"; empty when the entry is no complaint, or one that the toolkits make of
///         their own accord.
std::string ComplaintIn(GLogLevelFlags level, const GLogField* fields, gsize count);

} // namespace plccheck
