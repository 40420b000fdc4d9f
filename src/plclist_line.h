#pragma once

#include "plclist_numbers.h"

#include <wx/grid.h>

/// Draws a cell as the toolkit's own renderer for texts does, left in the middle, but measures no
/// text that is known to fit: the toolkit measures each three times, which costs more than to draw
/// it. A text that is too long for its cell, has more than one line, or letters beyond ASCII, which
/// may be of another font and height, is left to the toolkit. GUI thread.
class LineRenderer : public wxGridCellStringRenderer
{
public:
    /// @return how wide a text may be that is drawn whole in this cell.
    static int Room(const wxRect& cell);

    void Draw(
        wxGrid& grid,
        wxGridCellAttr& attr,
        wxDC& dc,
        const wxRect& cell,
        int row,
        int column,
        bool isSelected) override;

    wxGridCellRenderer* Clone() const override { return new LineRenderer; }

protected:
    /// Lets what is known of the font be found anew.
    void ForgetFont() { m_numbers = {}; }

private:
    void LearnFont(wxDC& dc, const wxFont& font);

    NumberGlyphs m_numbers; ///< Of the font drawn last.
    int m_lineHeight = 0;   ///< Of that font, as what follows.
    int m_widestLetter = 0; ///< Of ASCII.
};
