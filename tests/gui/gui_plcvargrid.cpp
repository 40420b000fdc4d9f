#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>
#include <wx/textctrl.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class VarGrid : public WatchPage
{
protected:
    void SetUp() override
    {
        WatchPage::SetUp();
        Load({"MB1/D", "MW2/H", "MD4/D", "MB8/D"});
        for (std::uint16_t id = 0; id < 4; ++id) {
            Answer(id, id + 1);
        }
    }

    /// Waits for a cursor position.
    void ExpectCursor(int row, int column)
    {
        EXPECT_TRUE(WaitFor("cursor", [this, row, column] {
            return grid->GetGridCursorRow() == row && grid->GetGridCursorCol() == column;
        }));
    }

    void ExpectSelected(const Rows& rows)
    {
        EXPECT_TRUE(WaitFor("selection", [this, &rows] { return Selected() == rows; }));
        EXPECT_EQ(Selected(), rows);
    }

    /// Types into the editor that is open.
    void TypeValue(const char* text)
    {
        Type(text);
        ASSERT_TRUE(WaitFor("typed", [this, text] { return EditorText() == text; }));
    }

    void PressAndWaitForEnd(int key)
    {
        PressKey(key);
        ASSERT_TRUE(WaitFor("editor closed", [this] { return !grid->IsCellEditControlShown(); }));
        RunPending();
    }

    /// Lets a key have its effect, if it has one.
    void PressAndSettle(int key)
    {
        PressKey(key);
        // The key that follows is handled after it.
        bool seen = false;
        grid->GetGridWindow()->Bind(wxEVT_KEY_DOWN, [&seen](wxKeyEvent& event) {
            seen = seen || event.GetKeyCode() == WXK_F12;
            event.Skip();
        });
        PressKey(WXK_F12);
        ASSERT_TRUE(WaitFor("key handled", [&seen] { return seen; }));
    }

    /// Expects the modify dialog and cancels it.
    void ExpectModifyDialog()
    {
        dialogs.Dialog("T91", [](wxDialog& dialog) { Click(*dialog.FindWindow(wxID_CANCEL)); });
    }

    void WaitForDialogGone()
    {
        ASSERT_TRUE(WaitFor("dialog", [this] { return dialogs.AllShown(); }));
        ASSERT_TRUE(WaitFor("dialog gone", [this] { return frame->IsActive(); }));
        RunPending();
    }

    void Resize(int width, int height)
    {
        frame->SetSize(width, height);
        ASSERT_TRUE(WaitFor("resized", [&] { return frame->GetSize() == wxSize(width, height); }));
        RunPending();
    }
};

} // namespace

// ---- Writing values

TEST_F(VarGrid, SendsATypedValueOnceAndShowsTheOldOneUntilTheAnswer)
{
    OpenEditor(0);
    TypeValue("42");

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
    EXPECT_EQ(Cell(0, 1), "1");
    ExpectCursor(1, 1);
    Answer(0, 42);
    EXPECT_EQ(Cell(0, 1), "42");
}

TEST_F(VarGrid, StartsToEditWithTheFirstTypedCharacter)
{
    GoTo(1, 1);
    PressKey('7');
    ASSERT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    PressKey('F');
    ASSERT_TRUE(WaitFor("typed", [this] { return EditorText().size() == 2; }));

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_THAT(host.InWords(), ElementsAre("write MW2=127"));
    EXPECT_EQ(Cell(1, 1), "0002");
}

TEST_F(VarGrid, SendsAValueEqualToTheShownOneWhenTheTextDiffers)
{
    OpenEditor(0);
    TypeValue("+1");

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=1"));
}

TEST_F(VarGrid, TakesAnEmptyTextForZero)
{
    OpenEditor(0);
    PressKey(WXK_DELETE);
    ASSERT_TRUE(WaitFor("emptied", [this] { return EditorText().empty(); }));

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=0"));
}

TEST_F(VarGrid, ShowsAParseErrorThatStaysAfterEnterAndSendsNothing)
{
    OpenEditor(0);
    TypeValue("300");

    PressAndWaitForEnd(WXK_RETURN);

    ExpectCursor(1, 1);
    EXPECT_EQ(Status(), "T100 127");
    EXPECT_EQ(Cell(0, 1), "1");
    EXPECT_THAT(host.InWords(), IsEmpty());

    PressKey(WXK_DOWN);
    ExpectCursor(2, 1);
    EXPECT_EQ(Status(), "");
}

TEST_F(VarGrid, ShowsAParseErrorInTheLastRowToo)
{
    OpenEditor(3);
    TypeValue("12a");

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_EQ(Status(), "T89");
    EXPECT_THAT(host.InWords(), IsEmpty());
    PressKey(WXK_UP);
    ExpectCursor(2, 1);
    EXPECT_EQ(Status(), "");
}

TEST_F(VarGrid, ClearsAParseErrorAtTheNextButton)
{
    OpenEditor(0);
    TypeValue("x");
    PressAndWaitForEnd(WXK_RETURN);
    ASSERT_EQ(Status(), "T89");
    Select({});
    dialogs.Message("T85", "T95");

    ClickAndWait(*remove, [this] { return dialogs.AllShown(); });

    EXPECT_EQ(Status(), "");
}

TEST_F(VarGrid, SendsATypedValueWhenTheOperatorClicksElsewhere)
{
    OpenEditor(0);
    TypeValue("42");

    ClickCell(*grid, 2, 0);
    ASSERT_TRUE(WaitFor("editor closed", [this] { return !grid->IsCellEditControlShown(); }));

    ExpectSelected({{2, 2}});
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
    EXPECT_EQ(Cell(0, 1), "1");
}

TEST_F(VarGrid, SendsNothingAtEscape)
{
    OpenEditor(0);
    TypeValue("42");

    PressAndWaitForEnd(WXK_ESCAPE);

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_EQ(Cell(0, 1), "1");
    ExpectCursor(0, 1);
}

TEST_F(VarGrid, SendsNothingForAnUnchangedEdit)
{
    OpenEditor(0);

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_EQ(Status(), "");
}

TEST_F(VarGrid, RefusesEditingInItsOuterColumns)
{
    for (const int column : {varColumnOperand, varColumnFormat}) {
        EXPECT_TRUE(grid->IsReadOnly(0, column));
        GoTo(0, column);
        PressAndSettle('7');
        PressAndSettle(WXK_F2);
        EXPECT_FALSE(grid->IsCellEditControlShown());
    }
    EXPECT_FALSE(grid->IsReadOnly(0, varColumnValue));
}

// ---- Answers while a value is being typed

TEST_F(VarGrid, KeepsTheTypedTextAndUpdatesOtherRowsWhileAnswersCome)
{
    OpenEditor(0);
    TypeValue("42");

    Answer(0, 9);
    Answer(3, 8);

    EXPECT_TRUE(grid->IsCellEditControlShown());
    EXPECT_EQ(EditorText(), "42");
    EXPECT_EQ(Cell(0, 1), "1");
    EXPECT_EQ(Cell(3, 1), "8");
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarGrid, ShowsTheLatestValueAfterAnUnchangedEdit)
{
    for (const int key : {WXK_RETURN, WXK_ESCAPE}) {
        Answer(0, 1);
        OpenEditor(0);
        Answer(0, 9);
        ASSERT_EQ(Cell(0, 1), "1");

        PressAndWaitForEnd(key);

        EXPECT_EQ(Cell(0, 1), "9");
        EXPECT_THAT(host.InWords(), IsEmpty());
    }
}

TEST_F(VarGrid, ShowsTheLatestValueAfterARefusedEdit)
{
    OpenEditor(0);
    TypeValue("x");
    Answer(0, 9);

    PressAndWaitForEnd(WXK_RETURN);

    EXPECT_EQ(Cell(0, 1), "9");
}

TEST_F(VarGrid, ResizesNoColumnWhileAValueIsTypedAndMakesUpForItAfterwards)
{
    const int before = grid->GetColSize(varColumnValue);
    OpenEditor(0);
    TypeValue("42");

    Answer(2, -2000000000);
    RunPending();
    EXPECT_EQ(grid->GetColSize(varColumnValue), before);
    EXPECT_EQ(EditorText(), "42");

    PressAndWaitForEnd(WXK_ESCAPE);
    EXPECT_TRUE(WaitFor(
        "wider column", [this, before] { return grid->GetColSize(varColumnValue) > before; }));
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarGrid, SendsNothingWhenTheWindowIsResizedWhileAValueIsTyped)
{
    const int before = grid->GetColSize(varColumnFormat);
    OpenEditor(0);
    TypeValue("42");

    Resize(800, 500);

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_TRUE(grid->IsCellEditControlShown());
    EXPECT_EQ(EditorText(), "42");
    EXPECT_EQ(grid->GetColSize(varColumnFormat), before);

    PressAndWaitForEnd(WXK_RETURN);
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
    EXPECT_TRUE(WaitFor("last column follows the window", [this, before] {
        return grid->GetColSize(varColumnFormat) > before + 100;
    }));
}

// ---- Selection by mouse

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

    ClickCell(*grid, 0, 2);

    ExpectSelected({{0, 0}});
}

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
    GoTo(0, 0);
    for (int times = 0; times < 2; ++times) { // the second time it is the cursor's own cell
        DoubleClickCell(*grid, 1, varColumnValue);
        ExpectSelected({{1, 1}});
        WaitThreeTicks();
        WaitThreeTicks();
        EXPECT_FALSE(grid->IsCellEditControlShown());
    }
}

TEST_F(VarGrid, DoesNothingAtADoubleClickOnAFormat)
{
    DoubleClickCell(*grid, 1, varColumnFormat);

    ExpectSelected({{1, 1}});
    WaitThreeTicks();
    EXPECT_FALSE(grid->IsCellEditControlShown());
}

TEST_F(VarGrid, OpensTheEditorByASlowClickOnTheCursorsValueCell)
{
    ClickCell(*grid, 1, varColumnValue);
    ExpectCursor(1, varColumnValue);
    ASSERT_FALSE(grid->IsCellEditControlShown());

    ClickCell(*grid, 1, varColumnValue);

    EXPECT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    PressAndWaitForEnd(WXK_ESCAPE);
    ExpectSelected({{1, 1}});
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
    Resize(150, 300);
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
    alone->CreateGrid(0, varColumnCount, wxGrid::wxGridSelectCells);

    alone->InitShowVars();

    EXPECT_EQ(
        alone->GetCellValue(0, 0) + alone->GetCellValue(0, 1) + alone->GetCellValue(0, 2), "");
    EXPECT_EQ(alone->GetCellValue(1, 0), "M 1.1");
    EXPECT_EQ(alone->GetCellValue(1, 1), "?");
    alone->Destroy();
}
