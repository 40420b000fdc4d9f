#pragma once

#include <wx/window.h>

/// @return the first descendant of @p window of a kind, depth first; null when there is none.
template <typename Kind> Kind* FirstOf(const wxWindow& window)
{
    for (wxWindow* child : window.GetChildren()) {
        if (auto* found = dynamic_cast<Kind*>(child)) {
            return found;
        }
        if (auto* below = FirstOf<Kind>(*child)) {
            return below;
        }
    }
    return nullptr;
}
