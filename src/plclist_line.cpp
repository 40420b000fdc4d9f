#include "plclist_line.h"

#include <wx/crt.h>
#include <wx/dc.h>
#include <wx/graphics.h>

#include <algorithm>

namespace {

constexpr int margin = 1; ///< The toolkit's, on each side of the cell, and then of the text.

bool IsOneLineOfAscii(const wxString& text)
{
    return std::all_of(text.begin(), text.end(), [](wxUniChar letter) {
        return letter.IsAscii() && wxIsprint(letter);
    });
}

} // namespace

int LineRenderer::Room(const wxRect& cell)
{
    return wxRect(cell).Deflate(margin).Deflate(margin).width;
}

void LineRenderer::Draw(
    wxGrid& grid,
    wxGridCellAttr& attr,
    wxDC& dc,
    const wxRect& cell,
    int row,
    int column,
    bool isSelected)
{
    const wxString text = grid.GetCellValue(row, column);
    const std::wstring_view letters(text.wc_str(), text.length());
    const wxRect inside = wxRect(cell).Deflate(margin);
    LearnFont(dc, attr.GetFont());
    const std::optional<int> numberWidth = m_numbers.Width(letters);
    const int atMost = numberWidth.value_or(static_cast<int>(text.length()) * m_widestLetter);
    const int room = Room(cell);
    if (!(numberWidth || IsOneLineOfAscii(text)) || m_lineHeight > inside.height ||
        (atMost > room && GetBestSize(grid, attr, dc, row, column).x > room)) {
        wxGridCellStringRenderer::Draw(grid, attr, dc, cell, row, column, isSelected);
        return;
    }
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the background alone
    wxGridCellRenderer::Draw(grid, attr, dc, cell, row, column, isSelected);
    const int left = inside.x + margin;
    wxRect painted;
    dc.GetClippingBox(painted);
    if (painted.x >= left + atMost) {
        return; // a slider that moves over the list has a strip of each cell painted
    }
    const int top = inside.y + (inside.height - m_lineHeight) / 2;
    if (numberWidth) {
        const wxColour colour = isSelected ? grid.GetSelectionForeground() : attr.GetTextColour();
        m_numbers.Draw(dc, letters, {left, top}, colour);
        return;
    }
    SetTextColoursAndFont(grid, attr, dc, isSelected);
    // As dc.DrawText() does, which then measures the text for a bounding box.
    dc.GetGraphicsContext()->DrawText(text, left, top);
}

void LineRenderer::LearnFont(wxDC& dc, const wxFont& font)
{
    if (font != m_numbers.Font()) {
        m_numbers.Learn(dc, font);
        dc.SetFont(font);
        wxSize widest;
        for (const char* letter : {"@", "W", "M", "%"}) {
            widest.IncTo(dc.GetTextExtent(letter));
        }
        m_lineHeight = widest.y;
        m_widestLetter = widest.x;
    }
}
