#include "descendants.h"
#include "plcprggrid.h"
#include "typing.h"

#include <wx/button.h>
#include <wx/combobox.h>

// Where keys lead while no value is being typed.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

} // namespace

// ---- After opening

TEST_F(Typing, BeginsInTheListOfAWindowThatHasJustBeenOpened)
{
    for (int opening = 0; opening < 2; ++opening) {
        grid->SetGridCursor(0, varColumnValue);
        Type("9");
        EXPECT_TRUE(WaitForText("9"));
        Destroy();
        OpenOn("MB1/D\n");
        ASSERT_TRUE(WaitForList());
    }
}

// ---- Selection

TEST_F(Typing, KeepsTheSelectionAtKeysThatCannotMoveTheCursor)
{
    grid->SetGridCursor(3, varColumnFormat);
    for (const int key : {WXK_DOWN, WXK_RIGHT, WXK_PAGEDOWN, WXK_END, WXK_NUMPAD_ENTER}) {
        PressKey(key);
        WaitThreeTicks();
        EXPECT_THAT(SelectedRows(), ElementsAre(Pair(3, 3))) << key;
    }
    grid->SetGridCursor(0, varColumnOperand);
    for (const int key : {WXK_UP, WXK_LEFT, WXK_PAGEUP, WXK_HOME}) {
        PressKey(key);
        WaitThreeTicks();
        EXPECT_THAT(SelectedRows(), ElementsAre(Pair(0, 0))) << key;
    }
}

TEST_F(Typing, KeepsSeveralSelectedRowsAtAKeyThatCannotMoveTheCursor)
{
    grid->SetGridCursor(0, varColumnOperand);
    grid->SelectBlock(0, 0, 2, varColumnCount - 1);

    PressKey(WXK_UP);

    WaitThreeTicks();
    EXPECT_THAT(SelectedRows(), ElementsAre(Pair(0, 2)));
}

TEST_F(Typing, KeepsTheSelectionWhenAnEntryEndsInTheLastRow)
{
    TypeValue(3, "42");

    PressKey(WXK_RETURN);

    EXPECT_TRUE(WaitForEnd());
    WaitThreeTicks();
    EXPECT_THAT(SelectedRows(), ElementsAre(Pair(3, 3)));
    EXPECT_THAT(host.InWords(), ElementsAre("write MB8=42"));
}

TEST_F(Typing, SelectsTheCursorsRowAtAKeyWhenNothingIsSelected)
{
    grid->SetGridCursor(3, varColumnOperand);
    grid->ClearSelection();

    PressKey(WXK_DOWN);

    EXPECT_TRUE(WaitFor("selection", [this] { return !SelectedRows().empty(); }));
    EXPECT_THAT(SelectedRows(), ElementsAre(Pair(3, 3)));
}

// ---- The message of a refused value

TEST_F(Typing, ShowsARefusalUntilTheOperatorMovesOn)
{
    const auto refuse = [this](int row) {
        TypeValue(row, "12a");
        PressKey(WXK_RETURN);
        ASSERT_TRUE(WaitForEnd());
        WaitThreeTicks();
        EXPECT_EQ(Status(), "T89");
    };
    const auto gone = [this] {
        return WaitFor("message gone", [this] { return Status().empty(); });
    };

    refuse(3);
    PressKey(WXK_DOWN); // cannot move
    EXPECT_TRUE(gone());

    refuse(0);
    ASSERT_TRUE(WaitForCursor(1, varColumnValue));
    ClickCell(*grid, 1, varColumnValue); // the cursor's own cell
    EXPECT_TRUE(gone());
    PressKey(WXK_LEFT);
    ASSERT_TRUE(WaitForCursor(1, varColumnOperand));

    refuse(0);
    ClickCell(*grid, 3, varColumnOperand, wxMOD_CONTROL);
    EXPECT_TRUE(gone());
}

// ---- From control to control

TEST_F(Typing, LeadsAroundAllControlsByTab)
{
    const std::vector<wxWindow*> around = {
        grid->GetGridWindow(),
        &Button(defineButton),
        &Button(modifyButton),
        &Button(deleteButton),
        notebook};
    grid->SetGridCursor(1, varColumnOperand);
    PressKey(WXK_TAB);
    ASSERT_TRUE(WaitForCursor(1, varColumnValue));
    PressKey(WXK_TAB);
    ASSERT_TRUE(WaitForCursor(1, varColumnFormat));
    for (std::size_t i = 1; i <= around.size(); ++i) {
        PressKey(WXK_TAB);
        wxWindow* next = around[i % around.size()];
        EXPECT_TRUE(WaitFor("next control", [=] { return next->HasFocus(); })) << i;
    }
    EXPECT_TRUE(WaitForCursor(1, varColumnFormat));

    PressKey(WXK_TAB, wxMOD_SHIFT);
    ASSERT_TRUE(WaitForCursor(1, varColumnValue));
    PressKey(WXK_TAB, wxMOD_SHIFT);
    ASSERT_TRUE(WaitForCursor(1, varColumnOperand));
    for (std::size_t i = 2 * around.size() - 1; i >= around.size(); --i) {
        PressKey(WXK_TAB, wxMOD_SHIFT);
        wxWindow* next = around[i % around.size()];
        EXPECT_TRUE(WaitFor("control before", [=] { return next->HasFocus(); })) << i;
    }
}

TEST_F(Typing, LeavesAnEmptyListByTab)
{
    panel->Reset();

    PressKey(WXK_TAB);
    EXPECT_TRUE(WaitFor("button", [this] { return Button(defineButton).HasFocus(); }));
    PressKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_TRUE(WaitForList());
    PressKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_TRUE(WaitFor("tabs", [this] { return notebook->HasFocus(); }));
}

TEST_F(Typing, LeadsAroundTheProgramPageByTab)
{
    PressKey(WXK_PAGEDOWN, wxMOD_CONTROL);
    auto* list = FirstOf<PlcPrgGrid>(*frame);
    auto* selector = FirstOf<wxComboBox>(*frame);
    ASSERT_TRUE(WaitFor("list", [=] { return list->GetGridWindow()->HasFocus(); }));

    PressKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_TRUE(WaitFor("selector", [=] { return selector->HasFocus(); }));
    PressKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_TRUE(WaitFor("tabs", [this] { return notebook->HasFocus(); }));
    PressKey(WXK_TAB);
    EXPECT_TRUE(WaitFor("selector", [=] { return selector->HasFocus(); }));
    PressKey(WXK_TAB);
    EXPECT_TRUE(WaitFor("list", [=] { return list->GetGridWindow()->HasFocus(); }));
}

TEST_F(Typing, SwitchesThePagesByKeysFromEveryControl)
{
    int page = 0;
    for (wxWindow* control :
         {static_cast<wxWindow*>(grid), &Button(defineButton), static_cast<wxWindow*>(notebook)}) {
        ASSERT_TRUE(Focus(control == grid ? *grid->GetGridWindow() : *control));
        for (const int expected : {1, 0}) {
            PressKey(expected == 1 ? WXK_PAGEDOWN : WXK_PAGEUP, wxMOD_CONTROL);
            EXPECT_TRUE(WaitFor("page", [=] { return notebook->GetSelection() == expected; }));
            page = notebook->GetSelection();
        }
    }
    EXPECT_EQ(page, 0);
}
