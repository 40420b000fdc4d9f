#pragma once

#include <wx/bitmap.h>
#include <wx/control.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/grid.h>
#include <wx/image.h>

#include <algorithm>

// How a cell is drawn, without a screen. GUI thread.

/// @return whether both pictures are of one size and show the same.
inline bool SamePicture(const wxImage& one, const wxImage& other)
{
    const int bytes = 3 * one.GetWidth() * one.GetHeight();
    return one.GetSize() == other.GetSize() &&
           std::equal(one.GetData(), one.GetData() + bytes, other.GetData());
}

/// @return a cell as it stands in its list.
inline wxImage PictureOfCell(wxGrid& grid, int row, int column)
{
    const wxRect cell(grid.CellToRect(row, column).GetSize());
    wxBitmap bitmap(cell.GetSize());
    wxMemoryDC dc(bitmap);
    const wxObjectDataPtr<wxGridCellRenderer> renderer(grid.GetCellRenderer(row, column));
    const wxGridCellAttrPtr attr = grid.GetOrCreateCellAttrPtr(row, column);
    renderer->Draw(grid, *attr, dc, cell, row, column, false);
    dc.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

/// @return a text as a column's head of this size.
inline wxImage PictureOfHead(
    const wxGrid& grid,
    wxGridCellAttrProvider& look,
    const wxSize& size,
    const wxString& text,
    int horizontal)
{
    wxBitmap bitmap(size);
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.Clear();
    look.GetColumnHeaderRenderer(0).DrawLabel(
        grid, dc, text, size, horizontal, wxALIGN_CENTRE, wxHORIZONTAL);
    dc.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

/// @return what is to be read of a text of this font where there is less room for it.
inline wxString Ellipsized(const wxString& text, wxWindow& window, const wxFont& font, int room)
{
    wxClientDC dc(&window);
    dc.SetFont(font);
    return wxControl::Ellipsize(text, dc, wxELLIPSIZE_END, room);
}
