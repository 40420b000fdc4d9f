#include "plclist_numbers.h"

#include <gtk/gtk.h>
#include <wx/fontutil.h>
#include <wx/graphics.h>

#include <algorithm>
#include <string>

namespace {

cairo_t* CairoOf(wxDC& dc)
{
    return static_cast<cairo_t*>(dc.GetGraphicsContext()->GetNativeContext());
}

template <typename Object> std::shared_ptr<Object> Owned(Object* object)
{
    return {object, g_object_unref};
}

/// @return the only run of a line; null if it has several, in several fonts.
const PangoLayoutRun* OnlyRun(const PangoLayoutLine& line)
{
    const bool isOne = line.runs != nullptr && line.runs->next == nullptr;
    return isOne ? static_cast<const PangoLayoutRun*>(line.runs->data) : nullptr;
}

} // namespace

void NumberGlyphs::Learn(wxDC& dc, const wxFont& font)
{
    m_font = font;
    m_face.reset();
    std::string pairs;
    for (const wchar_t left : letters) {
        for (const wchar_t right : letters) {
            pairs += {static_cast<char>(left), static_cast<char>(right)};
        }
    }
    const auto layout = Owned(pango_cairo_create_layout(CairoOf(dc)));
    pango_layout_set_font_description(layout.get(), font.GetNativeFontInfo()->description);
    pango_layout_set_text(layout.get(), pairs.c_str(), -1);
    const PangoLayoutRun* run = OnlyRun(*pango_layout_get_line_readonly(layout.get(), 0));
    if (run == nullptr || run->glyphs->num_glyphs != static_cast<int>(pairs.size())) {
        return;
    }
    const PangoGlyphInfo* glyphs = run->glyphs->glyphs;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const PangoGlyphInfo& right = glyphs[2 * i + 1];
        m_letters[i] = {right.glyph, right.geometry.width};
    }
    const auto isAlwaysTheSame = [&](char letter) {
        const PangoGlyphInfo& glyph = *glyphs++;
        const Letter& alone = LetterOf(static_cast<wchar_t>(letter));
        return glyph.glyph == alone.glyph && glyph.geometry.width == alone.width &&
               glyph.geometry.x_offset == 0 && glyph.geometry.y_offset == 0;
    };
    if (std::all_of(pairs.begin(), pairs.end(), isAlwaysTheSame)) {
        m_baseline = pango_layout_get_baseline(layout.get());
        m_face = Owned(PANGO_FONT(g_object_ref(run->item->analysis.font)));
    }
}

std::optional<int> NumberGlyphs::Width(std::wstring_view text) const
{
    if (m_face == nullptr || text.empty() ||
        text.find_first_not_of(letters) != std::wstring_view::npos) {
        return std::nullopt;
    }
    int width = 0;
    for (const wchar_t letter : text) {
        width += LetterOf(letter).width;
    }
    return PANGO_PIXELS(width);
}

void NumberGlyphs::Draw(
    wxDC& dc, std::wstring_view text, const wxPoint& place, const wxColour& colour) const
{
    const std::unique_ptr<PangoGlyphString, decltype(&pango_glyph_string_free)> glyphs(
        pango_glyph_string_new(), pango_glyph_string_free);
    pango_glyph_string_set_size(glyphs.get(), static_cast<int>(text.size()));
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Letter& letter = LetterOf(text[i]);
        PangoGlyphInfo& glyph = glyphs->glyphs[i];
        glyph = {};
        glyph.glyph = letter.glyph;
        glyph.geometry.width = letter.width;
    }
    cairo_t* cairo = CairoOf(dc);
    gdk_cairo_set_source_rgba(cairo, colour);
    cairo_move_to(cairo, place.x, place.y + pango_units_to_double(m_baseline));
    pango_cairo_show_glyph_string(cairo, static_cast<PangoFont*>(m_face.get()), glyphs.get());
}
