#include "filledwatchpage.h"

#include <memory>

// Double clicks, and slow ones on the cell that has the cursor.

TEST_F(VarGrid, OpensTheModifyDialogByADoubleClickOnAName)
{
    ExpectModifyDialog();

    DoubleClickCell(*grid, 1, 0);

    WaitForDialogGone();
    ExpectSelected({{1, 1}});
    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, DoesNothingAtADoubleClickOnAValue)
{
    for (const int row : {0, 1}) { // the second one is the row of the double click
        ClickCell(*grid, 3, varColumnOperand);
        ExpectCursor(3, varColumnOperand);
        GoTo(row, varColumnValue);

        DoubleClickAndSettle(1, varColumnValue);

        ExpectSelected({{1, 1}});
        EXPECT_FALSE(grid->IsCellEditControlShown());
    }
}

TEST_F(VarGrid, DoesNothingAtADoubleClickOnAFormat)
{
    DoubleClickAndSettle(1, varColumnFormat);

    ExpectSelected({{1, 1}});
    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, OpensTheEditorByASlowClickOnceItCanBecomeNoDoubleClick)
{
    ClickCell(*grid, 1, varColumnValue);
    ExpectCursor(1, varColumnValue);
    ASSERT_FALSE(grid->IsCellEditControlShown());
    bool openedEarly = true;
    std::unique_ptr<DoubleClickTime> sincePress;
    grid->GetGridWindow()->Bind(wxEVT_LEFT_DOWN, [&](wxMouseEvent& event) {
        sincePress = std::make_unique<DoubleClickTime>(
            [&] { openedEarly = grid->IsCellEditControlShown(); });
        event.Skip();
    });

    ClickCell(*grid, 1, varColumnValue);

    EXPECT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    EXPECT_FALSE(openedEarly);
    PressAndWaitForEnd(WXK_ESCAPE);
    ExpectSelected({{1, 1}});
}

TEST_F(VarGrid, OpensTheEditorOnceByASlowClick)
{
    GoTo(1, varColumnValue);
    ClickCell(*grid, 1, varColumnValue);
    ASSERT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));

    PressAndWaitForEnd(WXK_ESCAPE);
    OutliveDoubleClickTime();

    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, OpensNoEditorByASlowClickWhenAnotherCellIsClickedMeanwhile)
{
    ClickCursorsValueAnd([this] {
        ClickCell(*grid, 2, varColumnValue);
        ExpectCursor(2, varColumnValue);
    });

    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, OpensNoEditorByASlowClickWhenAKeyIsPressedMeanwhile)
{
    ClickCursorsValueAnd([this] {
        PressKey(WXK_DOWN);
        ExpectCursor(2, varColumnValue);
    });

    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, OpensNoEditorByASlowClickWhenTheKeyboardGoesElsewhereMeanwhile)
{
    ClickCursorsValueAnd([this] { EXPECT_TRUE(Focus(*define)); });

    EXPECT_FALSE(grid->IsCellEditControlShown());
    EXPECT_TRUE(define->HasFocus());
}

TEST_F(VarGrid, OpensNoEditorByAShiftClickOnTheCursorsOwnCell)
{
    ClickCell(*grid, 3, varColumnValue, wxMOD_SHIFT); // the cursor is above
    ExpectSelected({{0, 3}});
    GoTo(1, varColumnValue);
    ClickCell(*grid, 3, varColumnValue, wxMOD_SHIFT);
    ExpectSelected({{1, 3}});

    ClickCell(*grid, 1, varColumnValue, wxMOD_SHIFT);
    ExpectSelected({{1, 1}});
    OutliveDoubleClickTime();

    EXPECT_FALSE(grid->IsCellEditControlShown());
}
