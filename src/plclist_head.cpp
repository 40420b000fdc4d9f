#include "plclist_head.h"

#include <wx/control.h>
#include <wx/dc.h>

namespace {

class ColumnHead : public wxGridColumnHeaderRendererDefault
{
public:
    void DrawLabel(
        const wxGrid& grid,
        wxDC& dc,
        const wxString& text,
        const wxRect& place,
        int horizontal,
        int vertical,
        int orientation) const override
    {
        dc.SetFont(grid.GetLabelFont());
        const wxString shown = wxControl::Ellipsize(text, dc, wxELLIPSIZE_END, place.width);
        wxGridColumnHeaderRendererDefault::DrawLabel(
            grid,
            dc,
            shown,
            place,
            shown == text ? horizontal : static_cast<int>(wxALIGN_LEFT),
            vertical,
            orientation);
    }
};

} // namespace

const wxGridColumnHeaderRenderer& ListAttrProvider::GetColumnHeaderRenderer(int /*column*/)
{
    static const ColumnHead head;
    return head;
}
