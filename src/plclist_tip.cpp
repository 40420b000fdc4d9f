#include "plclist_tip.h"

#include "plclist_line.h"

#include <gtk/gtk.h>
#include <wx/clntdata.h>
#include <wx/control.h>
#include <wx/dcclient.h>

#include <optional>

namespace {

/// The tip of one list. GTK asks at every movement of the pointer what to show.
class CutTextTip : public wxClientData
{
public:
    explicit CutTextTip(wxGrid& grid) : m_grid(grid)
    {
        GtkWidget* widget = grid.GetGridWindow()->GetHandle();
        gtk_widget_set_has_tooltip(widget, TRUE);
        g_signal_connect(widget, "query-tooltip", G_CALLBACK(&CutTextTip::OnQuery), this);
        grid.GetGridWindow()->Bind(wxEVT_PAINT, &CutTextTip::OnPaint, this);
        grid.GetGridWindow()->Bind(wxEVT_LEAVE_WINDOW, &CutTextTip::OnLeave, this);
    }

private:
    static gboolean OnQuery(
        GtkWidget* /*widget*/,
        gint x,
        gint y,
        gboolean isByKeyboard,
        GtkTooltip* tooltip,
        gpointer tip)
    {
        auto* self = static_cast<CutTextTip*>(tip);
        return self->Show({x, y}, isByKeyboard != FALSE, tooltip) ? TRUE : FALSE;
    }

    bool Show(const wxPoint& place, bool isByKeyboard, GtkTooltip* tooltip)
    {
        const wxGridCellCoords cell = isByKeyboard ? m_grid.GetGridCursorCoords() : CellAt(place);
        const wxString text = TextOfTip(cell);
        if (!isByKeyboard) {
            m_pointer = place;
            m_shown = text;
        }
        if (text.empty()) {
            return false;
        }
        wxRect area = m_grid.CellToRect(cell);
        area.SetPosition(m_grid.CalcScrolledPosition(area.GetPosition()));
        const GdkRectangle tipArea{area.x, area.y, area.width, area.height};
        gtk_tooltip_set_tip_area(tooltip, &tipArea);
        gtk_tooltip_set_text(tooltip, text.utf8_str());
        return true;
    }

    /// Has GTK ask again when something else is to be said of the cell under a resting pointer.
    void OnPaint(wxPaintEvent& event)
    {
        if (m_pointer && TextOfTip(CellAt(*m_pointer)) != m_shown) {
            m_grid.CallAfter([widget = m_grid.GetGridWindow()->GetHandle()] {
                gtk_widget_trigger_tooltip_query(widget);
            });
        }
        event.Skip();
    }

    void OnLeave(wxMouseEvent& event)
    {
        m_pointer.reset();
        event.Skip();
    }

    wxGridCellCoords CellAt(const wxPoint& place) const
    {
        return m_grid.XYToCell(m_grid.CalcUnscrolledPosition(place));
    }

    /// @return the text of a cell that draws it cut; empty where there is nothing more to see.
    wxString TextOfTip(const wxGridCellCoords& cell) const
    {
        const bool edited = m_grid.IsCellEditControlShown() && cell == m_grid.GetGridCursorCoords();
        if (cell == wxGridNoCellCoords || edited) {
            return "";
        }
        const wxString text = m_grid.GetCellValue(cell);
        wxClientDC dc(m_grid.GetGridWindow());
        dc.SetFont(m_grid.GetCellFont(cell.GetRow(), cell.GetCol()));
        const int width = LineRenderer::Room(m_grid.CellToRect(cell));
        return wxControl::Ellipsize(text, dc, wxELLIPSIZE_END, width) == text ? "" : text;
    }

    wxGrid& m_grid; // not owned; its window of cells owns this
    std::optional<wxPoint> m_pointer;
    wxString m_shown; ///< By the pointer.
};

} // namespace

void ShowCutTextsInTips(wxGrid& grid)
{
    grid.GetGridWindow()->SetClientObject(new CutTextTip(grid));
}
