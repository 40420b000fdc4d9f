#pragma once

#include <glibmm/markup.h>
#include <glibmm/ustring.h>

// How the host's windows look. Any thread.

namespace plchost {

constexpr int gap = 8;
constexpr int rowGap = 4;

constexpr const char* goodColour = "#1e8449";
constexpr const char* badColour = "#c0392b";
constexpr const char* lateColour = "#9a6700";
constexpr const char* idleColour = "#5d636b";

/// A word on a coloured ground, as on a lamp.
/// @return markup, for a label.
inline Glib::ustring Badge(const char* text, const char* colour)
{
    return Glib::ustring("<span foreground='white' weight='bold' background='") + colour + "'>  " +
           Glib::Markup::escape_text(text) + "  </span>";
}

} // namespace plchost
