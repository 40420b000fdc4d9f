#include "plcvargrid_measure.h"

namespace {

/// Draws as the toolkit's own renderer for texts; measures the different texts of the column
/// instead of its cells.
class MeasuringRenderer : public wxGridCellStringRenderer
{
public:
    explicit MeasuringRenderer(ShownColumn& shown) : m_shown(shown) {}

    wxSize GetMaxBestSize(wxGrid& /*grid*/, wxGridCellAttr& attr, wxDC& dc) override
    {
        const wxSize sample = DoGetBestSize(attr, dc, "0123456789-?");
        if (sample != m_sample) {
            // Another font, or the same one at another scale.
            m_sample = sample;
            m_shown.ForgetWidths();
        }
        const auto measure = [&](const std::wstring& text) {
            return DoGetBestSize(attr, dc, text).x;
        };
        return {m_shown.MaxWidth(measure), sample.y};
    }

    wxGridCellRenderer* Clone() const override { return new MeasuringRenderer(m_shown); }

private:
    ShownColumn& m_shown; // not owned
    wxSize m_sample;
};

} // namespace

wxGridCellAttr* NewMeasuringAttr(ShownColumn& shown)
{
    auto* attr = new wxGridCellAttr;
    attr->SetRenderer(new MeasuringRenderer(shown));
    return attr;
}
