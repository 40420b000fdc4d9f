#include "contrast.h"
#include "filledwatchpage.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace

// ---- Selection by mouse

TEST_F(VarGrid, ShowsSelectedRowsReadablyWithAndWithoutTheKeyboard)
{
    EXPECT_GE(SelectionContrast(*grid), readable);
}

TEST_F(VarGrid, SelectsTheWholeRowOfAClickedCell)
{
    for (int column = 0; column < varColumnCount; ++column) {
        ClickCell(*grid, column + 1, column);
        ExpectSelected({{column + 1, column + 1}});
        EXPECT_EQ(grid->GetSelectedBlocks().begin()->GetLeftCol(), 0);
        EXPECT_EQ(grid->GetSelectedBlocks().begin()->GetRightCol(), varColumnCount - 1);
    }
}

TEST_F(VarGrid, SelectsSeveralRowsByAShiftClick)
{
    ClickCell(*grid, 1, 0);
    ExpectSelected({{1, 1}});

    ClickCell(*grid, 3, 0, wxMOD_SHIFT);

    ExpectSelected({{1, 3}});
}

TEST_F(VarGrid, AddsAndTakesAwayRowsByCtrlClicks)
{
    ClickCell(*grid, 0, 0);
    ExpectSelected({{0, 0}});

    ClickCell(*grid, 2, 0, wxMOD_CONTROL);
    ExpectSelected({{0, 0}, {2, 2}});
    ClickCell(*grid, 3, 1, wxMOD_CONTROL);
    ExpectSelected({{0, 0}, {2, 3}});
    ClickCell(*grid, 2, 2, wxMOD_CONTROL);
    ExpectSelected({{0, 0}, {3, 3}});

    ClickAndWait(*remove, [this] { return grid->GetNumberRows() == 2; });
    EXPECT_THAT(Column(0), ElementsAre("MW 2", "MD 4"));
    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 3"));
}

TEST_F(VarGrid, SelectsTheRowAgainWhenTheCursorsOwnCellIsClicked)
{
    for (const int column : {varColumnOperand, varColumnValue}) {
        ClickCell(*grid, 1, column);
        ExpectSelected({{1, 1}});
        Select({});

        ClickCell(*grid, 1, column);

        ExpectSelected({{1, 1}});
    }
}

TEST_F(VarGrid, TakesTheKeyboardWhenTheCursorsOwnCellIsClicked)
{
    ClickCell(*grid, 1, 0);
    ExpectSelected({{1, 1}});
    ASSERT_TRUE(Focus(*define));

    ClickCell(*grid, 1, 0);

    EXPECT_TRUE(WaitFor("keyboard in the grid", [this] { return GridHasKeyboard(); }));
}

TEST_F(VarGrid, ReplacesTheSelectionWhenTheCursorMoves)
{
    Select({{0, 1}, {3, 3}});
    GoTo(1, 0);
    ExpectSelected({{1, 1}});

    PressKey(WXK_DOWN);

    ExpectSelected({{2, 2}});
}

TEST_F(VarGrid, SelectsARowInItsFirstSelectionModeToo)
{
    panel->Reset();
    grid->SetSelectionMode(wxGrid::wxGridSelectCells);
    ExpectAddress("T9", "1.1");
    ClickAndWait(*define, [this] { return grid->GetNumberRows() == 1; });
    Select({});

    ClickCell(*grid, 0, varColumnValue);

    ExpectSelected({{0, 0}});
    EXPECT_EQ(grid->GetSelectedBlocks().begin()->GetRightCol(), varColumnCount - 1);
}

TEST_F(VarGrid, SelectsAClickedRowAlsoAfterADelete)
{
    ClickCell(*grid, 1, 0);
    ExpectSelected({{1, 1}});
    ClickAndWait(*remove, [this] { return grid->GetNumberRows() == 3; });

    ClickCell(*grid, 2, 0);

    ExpectSelected({{2, 2}});
}

TEST_F(VarGrid, SelectsTheRowOfAnArrowKeyAlsoAfterADelete)
{
    ClickCell(*grid, 1, 0);
    ExpectSelected({{1, 1}});
    ClickAndWait(*remove, [this] { return grid->GetNumberRows() == 3; });
    GoTo(1, 0);

    PressKey(WXK_DOWN);

    ExpectSelected({{2, 2}});
}

TEST_F(VarGrid, TakesAClickWithShiftAndCtrlForAPlainOne)
{
    ClickCell(*grid, 1, 0);
    ExpectSelected({{1, 1}});

    ClickCell(*grid, 3, 0, wxMOD_SHIFT | wxMOD_CONTROL);

    ExpectSelected({{3, 3}});
}

TEST_F(VarGrid, TakesAPressWhereTheEdgeOfAColumnHasMovedAwayFromThePointer)
{
    wxWindow& cells = *grid->GetGridWindow();
    const wxRect cell = grid->CellToRect(1, varColumnOperand);
    const wxPoint edge(cell.x + grid->GetColSize(varColumnOperand) - 1, cell.y + cell.height / 2);
    const auto send = [&](wxEventType what) {
        wxMouseEvent event(what);
        event.SetPosition(edge);
        event.SetEventObject(&cells);
        cells.HandleWindowEvent(event);
    };
    send(wxEVT_MOTION);

    grid->SetColSize(varColumnOperand, 2 * cell.width);
    send(wxEVT_LEFT_DOWN);
    send(wxEVT_LEFT_UP);

    ExpectSelected({{1, 1}});
    EXPECT_EQ(grid->GetColSize(varColumnOperand), 2 * cell.width);
}

TEST_F(VarGrid, OutlivesAClickOnAColumnLabel)
{
    ClickAt(*grid->GetGridColLabelWindow(), {5, 5});
    RunPending();

    GoTo(2, 0);
    ExpectSelected({{2, 2}});
}

// ---- Enter

TEST_F(VarGrid, OpensTheModifyDialogByEnterOnAName)
{
    GoTo(1, varColumnOperand);
    ExpectModifyDialog();

    PressKey(WXK_RETURN);

    WaitForDialogGone();
    ExpectCursor(1, varColumnOperand);
}

TEST_F(VarGrid, OpensTheEditorByEnterOnAValue)
{
    GoTo(1, varColumnValue);

    PressKey(WXK_RETURN);

    EXPECT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    ExpectCursor(1, varColumnValue);
}

TEST_F(VarGrid, DoesNothingByEnterOnAFormat)
{
    GoTo(1, varColumnFormat);

    PressAndSettle(WXK_RETURN);

    EXPECT_FALSE(grid->IsCellEditControlShown());
    ExpectCursor(1, varColumnFormat);
}

TEST_F(VarGrid, DoesNothingByEnterWithTwoRowsSelectedOrNone)
{
    for (const Rows& rows : {Rows{{1, 2}}, Rows{{1, 1}, {3, 3}}, Rows{}}) {
        for (int column = 0; column < varColumnCount; ++column) {
            GoTo(1, column);
            Select(rows);

            PressAndSettle(WXK_RETURN);

            EXPECT_FALSE(grid->IsCellEditControlShown());
            EXPECT_EQ(Selected(), rows);
            ExpectCursor(1, column);
        }
    }
}

TEST_F(VarGrid, LeavesTheKeypadsEnterToTheToolkit)
{
    GoTo(1, varColumnOperand);

    PressKey(WXK_NUMPAD_ENTER);

    ExpectCursor(2, varColumnOperand);
}

TEST_F(VarGrid, CommitsByTheKeypadsEnter)
{
    OpenEditor(0);
    TypeValue("42");

    PressAndWaitForEnd(WXK_NUMPAD_ENTER);

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
}

TEST_F(VarGrid, LeavesEmptyListsAlone)
{
    panel->Reset();
    host.requests.clear();
    grid->SetFocus();
    ASSERT_TRUE(WaitFor("grid focused", [this] { return GridHasKeyboard(); }));

    PressAndSettle(WXK_RETURN);
    PressAndSettle(WXK_DOWN);
    ClickAt(*grid->GetGridWindow(), {20, 20});
    RunPending();

    EXPECT_EQ(grid->GetNumberRows(), 0);
    EXPECT_THAT(host.InWords(), IsEmpty());
}

// ---- Columns

TEST_F(VarGrid, GivesItsLastColumnWhatThePageLeaves)
{
    const int width = grid->GetColSize(0) + grid->GetColSize(1) + grid->GetColSize(2);
    EXPECT_EQ(width, grid->GetClientSize().GetWidth() - 8);

    Resize(900, 480);

    const int wider = grid->GetColSize(0) + grid->GetColSize(1) + grid->GetColSize(2);
    EXPECT_GT(wider, width);
    EXPECT_EQ(wider, grid->GetClientSize().GetWidth() - 8);
}

TEST_F(VarGrid, KeepsItsLastColumnVisibleOnAVeryNarrowPage)
{
    Resize(200, 300);
    Answer(2, -2000000000);
    RunPending();

    for (int column = 0; column < varColumnCount; ++column) {
        EXPECT_TRUE(grid->IsColShown(column));
        EXPECT_GT(grid->GetColSize(column), 0);
    }
}

TEST_F(VarGrid, LeavesARowWithoutANameEmpty)
{
    panel->Reset();
    std::vector<PlcDebugVar> vars(2);
    vars[1].area = eAreaFlag;
    vars[1].address = "1.1";
    auto* alone = new PlcVarGrid(panel, vars);

    alone->InitShowVars();

    EXPECT_EQ(
        alone->GetCellValue(0, 0) + alone->GetCellValue(0, 1) + alone->GetCellValue(0, 2), "");
    EXPECT_EQ(alone->GetCellValue(1, 0), "M 1.1");
    EXPECT_EQ(alone->GetCellValue(1, 1), "?");
    alone->Destroy();
}
