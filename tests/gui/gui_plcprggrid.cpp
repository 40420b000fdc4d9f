#include "cellpicture.h"
#include "contrast.h"
#include "gui_plcprgpage.h"
#include "plclist.h"
#include "plclist_line.h"
#include "pointer.h"
#include "useractions.h"
#include "waitfor.h"
#include "widgets.h"

#include <gmock/gmock.h>
#include <wx/region.h>

#include <algorithm>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// What the toolkit makes of the columns, when it looks at each cell.
std::vector<int> ToolkitWidths(PlcPrgGrid& grid)
{
    wxGrid literal(grid.GetParent(), wxID_ANY);
    const wxGridUpdateLocker batch(&literal);
    literal.CreateGrid(grid.GetNumberRows(), 2);
    literal.SetDefaultCellFont(grid.GetDefaultCellFont());
    std::vector<int> widths;
    for (int column = 0; column < 2; ++column) {
        literal.SetColLabelValue(column, grid.GetColLabelValue(column));
        for (int row = 0; row < grid.GetNumberRows(); ++row) {
            literal.SetCellValue(row, column, grid.GetCellValue(row, column));
        }
        literal.AutoSizeColumn(column);
        widths.push_back(literal.GetColSize(column));
    }
    return widths;
}

std::vector<int> Widths(const PlcPrgGrid& grid)
{
    return {grid.GetColSize(0), grid.GetColSize(1)};
}

} // namespace

class PlcPrgGridTest : public PlcPrgPage
{
};

TEST_F(PlcPrgGridTest, ShowsSelectedRowsReadablyWithAndWithoutTheKeyboard)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});

    EXPECT_GE(SelectionContrast(*m_grid), readable);
}

TEST_F(PlcPrgGridTest, IsForReadingOnly)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    ASSERT_TRUE(Focus(*m_grid->GetGridWindow()));
    ClickCell(*m_grid, 2, 1);
    ASSERT_TRUE(WaitFor("cursor", [&] { return m_grid->GetGridCursorRow() == 2; }));

    Type("5");
    PressKey(WXK_F2);
    PressKey(WXK_DOWN);

    ASSERT_TRUE(WaitFor("cursor", [&] { return m_grid->GetGridCursorRow() == 3; }));
    EXPECT_FALSE(m_grid->IsEditable());
    EXPECT_FALSE(m_grid->IsCellEditControlEnabled());
    EXPECT_EQ(Shown(2), "?/-");
}

TEST_F(PlcPrgGridTest, HasNoRowLabelsAndRowsOfOneHeight)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});

    int horizontal = 0;
    int vertical = 0;
    m_grid->GetDefaultCellAlignment(&horizontal, &vertical);
    EXPECT_EQ(horizontal, wxALIGN_LEFT);
    EXPECT_EQ(vertical, wxALIGN_CENTRE);
    EXPECT_EQ(m_grid->GetRowLabelSize(), 0);
    EXPECT_FALSE(m_grid->CanDragRowSize(0));
    EXPECT_EQ(m_grid->GetSelectionMode(), wxGrid::wxGridSelectCells);
}

TEST_F(PlcPrgGridTest, SizesItsColumnsAsTheToolkitWouldAndGivesTheTextTheRest)
{
    OpenOnPage({{"OB1", 0, Networks(300)}});
    EXPECT_EQ(Widths(*m_grid), ToolkitWidths(*m_grid));

    AnswerSubscribed(1234567890);
    Resize({700, 480});
    EXPECT_EQ(Widths(*m_grid), ToolkitWidths(*m_grid));
    EXPECT_EQ(
        m_grid->GetColSize(2),
        m_grid->GetClientSize().x - m_grid->GetColSize(0) - m_grid->GetColSize(1) - 8);

    ChooseBlock(0);
    Resize({600, 480});
    EXPECT_EQ(Widths(*m_grid), ToolkitWidths(*m_grid));
}

TEST_F(PlcPrgGridTest, MeasuresItsColumnsAnewInAnotherFont)
{
    OpenOnPage({{"OB1", 0, Networks(300)}});
    AnswerSubscribed(-1000000);
    Resize({700, 480});
    const std::vector<int> before = Widths(*m_grid);

    m_grid->SetDefaultCellFont(m_grid->GetDefaultCellFont().Scaled(2));
    Resize({600, 480});

    EXPECT_EQ(Widths(*m_grid), ToolkitWidths(*m_grid));
    EXPECT_GT(Widths(*m_grid)[1], before[1]);
}

TEST_F(PlcPrgGridTest, DrawsAValueThatDoesNotFitWithAnEllipsis)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    AnswerSubscribed(-2147483600);
    ASSERT_EQ(Shown(2), "1/-2147483598");
    const wxImage cut = PictureOfCell(*m_grid, 2, PrgColumnValue);

    wxGrid other(m_panel, wxID_ANY);
    SetUpList(other);
    other.CreateGrid(3, 2);
    other.SetColSize(1, m_grid->GetColSize(PrgColumnValue));
    const int room = LineRenderer::Room(other.CellToRect(2, 1));
    const wxString read = Ellipsized("-2147483598", other, other.GetDefaultCellFont(), room);
    other.SetCellValue(2, 1, read);

    EXPECT_TRUE(read.StartsWith("-2")) << read;
    EXPECT_LT(read.length(), 11U);
    EXPECT_TRUE(SamePicture(cut, PictureOfCell(other, 2, 1)));
}

TEST_F(PlcPrgGridTest, ShowsTheListingInLettersOfOneWidthAndTheListsRowHeight)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    wxClientDC dc(m_grid->GetGridWindow());
    const auto width = [&](int column, const char* text) {
        dc.SetFont(m_grid->GetCellFont(0, column));
        return dc.GetTextExtent(text).x;
    };

    EXPECT_EQ(width(PrgColumnText, "iiii"), width(PrgColumnText, "WWWW"));
    EXPECT_LT(width(PrgColumnValue, "iiii"), width(PrgColumnValue, "WWWW"));
    EXPECT_EQ(m_grid->GetRowSize(0), wxGrid(m_panel, wxID_ANY).GetDefaultRowSize());
}

TEST_F(PlcPrgGridTest, SaysTheWholeOfAValueThatDoesNotFitInATipThatFollowsIt)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    AnswerSubscribed(-2147483600);

    PointAtCell(*m_grid, 2, PrgColumnValue);
    ASSERT_TRUE(WaitFor("tip", [] { return TipOnScreen() == "-2147483598"; }));
    AnswerSubscribed(-2147483500);
    ASSERT_TRUE(WaitFor("next tip", [] { return TipOnScreen() == "-2147483498"; }));
    Resize({700, 480});
    EXPECT_TRUE(WaitFor("no tip", [] { return !TipOnScreen(); }));
}

TEST_F(PlcPrgGridTest, KeepsTheTextColumnInAPageTooNarrowForIt)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    const int before = m_grid->GetColSize(2);

    m_grid->SetSize(40, 300);

    EXPECT_LT(m_grid->GetClientSize().x, m_grid->GetColSize(0) + m_grid->GetColSize(1));
    EXPECT_EQ(m_grid->GetColSize(2), before);
    EXPECT_TRUE(m_grid->IsColShown(2));
}

TEST_F(PlcPrgGridTest, ShowsEveryColumnAtEveryWidth)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    const std::vector<int> fixed = Widths(*m_grid);
    const auto expectColumns = [&](int width) {
        m_grid->SetSize(width, 300);
        const int left = m_grid->GetClientSize().x - fixed[0] - fixed[1] - 8;
        EXPECT_EQ(Widths(*m_grid), fixed) << width;
        EXPECT_TRUE(m_grid->IsColShown(PrgColumnText)) << width;
        if (left >= m_grid->GetColMinimalAcceptableWidth()) {
            EXPECT_EQ(m_grid->GetColSize(PrgColumnText), left) << width;
        }
    };

    for (int width = 500; width >= 60; --width) {
        expectColumns(width);
    }
    for (int width = 60; width <= 500; ++width) {
        expectColumns(width);
    }
}

TEST_F(PlcPrgGridTest, PaintsTheCellsThatAnAnswerHasChangedAndNoOther)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
    AnswerSubscribed();
    WaitThreeTicks(); // all that is due has been painted
    wxRegion painted;
    m_grid->GetGridWindow()->Bind(wxEVT_PAINT, [&](wxPaintEvent& event) {
        painted.Union(m_grid->GetGridWindow()->GetUpdateRegion());
        event.Skip();
    });
    const auto cell = [&](int row, int column) {
        return wxRect(m_grid->CellToRect(row, column)).Deflate(2);
    };

    AnswerSubscribed();
    WaitThreeTicks();
    EXPECT_TRUE(painted.IsEmpty());

    AnswerSubscribed(1);
    ASSERT_TRUE(WaitFor("painted", [&] { return painted.Contains(cell(9, 1)) == wxInRegion; }));
    EXPECT_EQ(painted.Contains(cell(0, 1)), wxInRegion);
    EXPECT_EQ(painted.Contains(cell(5, 2)), wxOutRegion);
}
