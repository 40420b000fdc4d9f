#pragma once

#include <wx/grid.h>
#include <wx/settings.h>

#include <algorithm>
#include <cmath>

/// @return the relative luminance of a colour, 0 (black) to 1 (white), as WCAG 2 defines it.
inline double Luminance(const wxColour& colour)
{
    const auto linear = [](unsigned char channel) {
        const double value = channel / 255.0;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.Red()) + 0.7152 * linear(colour.Green()) +
           0.0722 * linear(colour.Blue());
}

/// @return how a text stands out, from 1 (not at all) to 21 (black on white), as WCAG 2 defines it.
inline double Contrast(const wxColour& text, const wxColour& background)
{
    const auto [darker, lighter] = std::minmax({Luminance(text), Luminance(background)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// What WCAG 2 asks of a text of usual size.
constexpr double readable = 4.5;

/// @return the contrast of the selected rows, with the keyboard or without, whichever is worse.
inline double SelectionContrast(const wxGrid& grid)
{
    const wxColour text = grid.GetSelectionForeground();
    return std::min(
        Contrast(text, grid.GetSelectionBackground()),
        Contrast(text, wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW)));
}
