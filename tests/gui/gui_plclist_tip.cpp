#include "filledwatchpage.h"
#include "gridinframe.h"
#include "plclist.h"
#include "useractions.h"
#include "waitfor.h"
#include "widgets.h"

#include <gtest/gtest.h>

namespace {

const wxString cutText = "-123456789 and a good deal more";

/// A list whose cells are too narrow for cutText, on the screen, with the keyboard.
class ListTip : public testing::Test
{
public:
    ~ListTip() override
    {
        ScrollToRow(*grid, 0);
        PointAt(0, 0); // GTK keeps the tip of a window that goes in mind
        EXPECT_TRUE(NoTip());
        delete frame;
    }

protected:
    ListTip()
    {
        grid->CreateGrid(50, 3);
        SetUpList(*grid);
        frame->SendSizeEvent();
        grid->SetCellValue(1, 1, cutText);
        EXPECT_TRUE(Focus(*grid->GetGridWindow()));
        PointAt(0, 0);
    }

    /// Moves the pointer to a cell, which knows it then.
    void PointAt(int row, int column) const
    {
        wxPoint pointer;
        const auto look = [&pointer](wxMouseEvent& event) {
            pointer = event.GetPosition();
            event.Skip();
        };
        grid->GetGridWindow()->Bind(wxEVT_MOTION, look);
        PointAtCell(*grid, row, column);
        EXPECT_TRUE(WaitFor("pointer at the cell", [&] {
            return grid->XYToCell(grid->CalcUnscrolledPosition(pointer)) ==
                   wxGridCellCoords(row, column);
        }));
        EXPECT_TRUE(grid->GetGridWindow()->Unbind(wxEVT_MOTION, look));
    }

    static testing::AssertionResult Tip(const wxString& words)
    {
        return WaitFor("tip " + words.ToStdString(), [&] { return TipOnScreen() == words; });
    }

    static testing::AssertionResult NoTip()
    {
        return WaitFor("no tip", [] { return !TipOnScreen(); });
    }

    wxFrame* frame = ShownFrame("list");
    wxGrid* grid = new wxGrid(frame, wxID_ANY);
};

} // namespace

TEST_F(ListTip, ShowsTheWholeOfATextThatIsCut)
{
    PointAt(1, 1);

    EXPECT_TRUE(Tip(cutText));
}

TEST_F(ListTip, GoesWithThePointerFromCellToCell)
{
    grid->SetCellValue(3, 2, "another text that no cell here can hold");
    grid->SetCellValue(2, 1, "fits");
    PointAt(1, 1);
    ASSERT_TRUE(Tip(cutText));

    PointAt(3, 2);
    EXPECT_TRUE(Tip("another text that no cell here can hold"));
    PointAt(2, 1);
    EXPECT_TRUE(NoTip());
    PointAt(1, 1);
    EXPECT_TRUE(Tip(cutText));
}

TEST_F(ListTip, FollowsATextThatChangesUnderARestingPointer)
{
    PointAt(1, 1);
    ASSERT_TRUE(Tip(cutText));

    grid->SetCellValue(1, 1, "-987654321 and as much more");
    EXPECT_TRUE(Tip("-987654321 and as much more"));
    grid->SetCellValue(1, 1, "1");
    EXPECT_TRUE(NoTip());
    grid->SetCellValue(1, 1, cutText);
    EXPECT_TRUE(Tip(cutText));
}

TEST_F(ListTip, FollowsTheCellsThatAreScrolledUnderARestingPointer)
{
    PointAt(1, 1);
    ASSERT_TRUE(Tip(cutText));

    ScrollToRow(*grid, 20);

    EXPECT_TRUE(NoTip());
}

TEST_F(ListTip, GoesWhenTheColumnBecomesWideEnough)
{
    PointAt(1, 1);
    ASSERT_TRUE(Tip(cutText));

    grid->AutoSizeColumn(1);

    EXPECT_TRUE(NoTip());
}

TEST_F(ListTip, IsShownAndTakenBackOfTheCursorsCellByKey)
{
    PointAt(0, 0);
    grid->GoToCell(1, 1);
    ASSERT_TRUE(NoTip());

    PressKey(WXK_F1, wxMOD_CONTROL);
    EXPECT_TRUE(Tip(cutText));
    PressKey(WXK_F1, wxMOD_CONTROL);
    EXPECT_TRUE(NoTip());
}

TEST_F(ListTip, DoesNotShowWhatLiesUnderAnEditor)
{
    PointAt(1, 1);
    ASSERT_TRUE(Tip(cutText));
    grid->GoToCell(1, 1);

    grid->EnableCellEditControl();

    EXPECT_TRUE(NoTip());
}

TEST_F(VarGrid, SaysTheWholeOfAValueThatCameWhileAnotherIsEdited)
{
    Answer(1, 0);
    OpenEditor(0);

    Answer(2, -123456789);
    PointAtCell(*grid, 2, varColumnValue);

    EXPECT_TRUE(WaitFor("tip", [] { return TipOnScreen() == "-123456789"; }));
    Answer(2, 7);
    EXPECT_TRUE(WaitFor("no tip", [] { return !TipOnScreen(); }));
    EXPECT_TRUE(grid->IsCellEditControlShown());
}
