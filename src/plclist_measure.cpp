#include "plclist_measure.h"

#include "plclist_line.h"

namespace {

/// Measures the different texts of the column instead of its cells.
class MeasuringRenderer : public LineRenderer
{
public:
    explicit MeasuringRenderer(ShownColumn& shown) : m_shown(shown) {}

    wxSize
    GetBestSize(wxGrid& /*grid*/, wxGridCellAttr& attr, wxDC& dc, int row, int /*column*/) override
    {
        return {m_shown.Width(static_cast<std::size_t>(row), Measure(attr, dc)), m_sample.y};
    }

    wxSize GetMaxBestSize(wxGrid& /*grid*/, wxGridCellAttr& attr, wxDC& dc) override
    {
        const wxSize sample = DoGetBestSize(attr, dc, "0123456789-?");
        if (sample != m_sample) {
            // Another font, or the same one at another scale.
            m_sample = sample;
            ForgetFont();
            m_shown.ForgetWidths();
        }
        return {m_shown.MaxWidth(Measure(attr, dc)), sample.y};
    }

    wxGridCellRenderer* Clone() const override { return new MeasuringRenderer(m_shown); }

private:
    ShownColumn::Measure Measure(const wxGridCellAttr& attr, wxDC& dc)
    {
        return [&, this](const std::wstring& text) { return DoGetBestSize(attr, dc, text).x; };
    }

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
