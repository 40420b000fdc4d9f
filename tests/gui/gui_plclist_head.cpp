#include "cellpicture.h"
#include "filledwatchpage.h"

namespace {

class ColumnHead : public VarGrid
{
protected:
    int WidthOf(const wxString& text) const
    {
        wxClientDC dc(grid);
        dc.SetFont(grid->GetLabelFont());
        return dc.GetTextExtent(text).x;
    }

    wxImage Picture(
        wxGridCellAttrProvider& look,
        int width,
        const wxString& text,
        int horizontal = wxALIGN_CENTRE) const
    {
        return PictureOfHead(*grid, look, wxSize(width, 30), text, horizontal);
    }

    wxGridCellAttrProvider toolkits;
};

const wxString head = "Displayed format";

} // namespace

TEST_F(ColumnHead, BeginsAtTheLeftAndEndsInAnEllipsisWhereItDoesNotFit)
{
    wxGridCellAttrProvider& ours = *grid->GetTable()->GetAttrProvider();
    const int width = WidthOf(head) - 20;
    const wxString cut = Ellipsized(head, *grid, grid->GetLabelFont(), width);
    ASSERT_NE(cut, head);

    EXPECT_TRUE(
        SamePicture(Picture(ours, width, head), Picture(toolkits, width, cut, wxALIGN_LEFT)));
}

TEST_F(ColumnHead, IsDrawnAsByTheToolkitWhereItFits)
{
    wxGridCellAttrProvider& ours = *grid->GetTable()->GetAttrProvider();
    const int width = WidthOf(head) + 20;

    EXPECT_TRUE(SamePicture(Picture(ours, width, head), Picture(toolkits, width, head)));
}
