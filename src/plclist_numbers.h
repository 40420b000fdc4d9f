#pragma once

#include <wx/dc.h>
#include <wx/font.h>

#include <array>
#include <memory>
#include <optional>
#include <string_view>

/// The letters of decimal numbers in one font. Values change all the time, and to find the glyphs
/// of a text costs more than to draw them: here each letter's is found once, if the font sets these
/// letters without looking at their neighbours. GUI thread.
class NumberGlyphs
{
public:
    /// Finds the letters of a font.
    void Learn(wxDC& dc, const wxFont& font);

    /// @return the font of the letters.
    const wxFont& Font() const { return m_font; }

    /// @return the text's width in pixels, as the toolkit measures it; nothing if it is no number,
    ///         or the font looks at neighbours.
    std::optional<int> Width(std::wstring_view text) const;

    /// Draws a text that has a width, as the toolkit does.
    /// @param place of its upper left corner.
    void Draw(wxDC& dc, std::wstring_view text, const wxPoint& place, const wxColour& colour) const;

private:
    /// In Pango's units.
    struct Letter
    {
        unsigned glyph;
        int width;
    };

    static constexpr std::wstring_view letters = L"0123456789-.";

    const Letter& LetterOf(wchar_t letter) const { return m_letters[letters.find(letter)]; }

    wxFont m_font;
    std::shared_ptr<void> m_face; ///< A PangoFont; null if the font looks at neighbours.
    std::array<Letter, letters.size()> m_letters{};
    int m_baseline = 0; ///< Below the upper edge, in Pango's units.
};
