#include "filledwatchpage.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(VarGrid, ShowsParseErrorsOfTextsWithWrongPlaceholdersSafely)
{
    struct Refusal
    {
        const char* typed;
        const char* shown;
    };

    texts.Change({{89, "%n%s%d"}, {100, "%s"}, {106, "%d %d"}});
    for (const Refusal& refusal :
         {Refusal{"x", "%n%s%d"}, Refusal{"128", "%s 127"}, Refusal{"-129", "%d %d -128"}}) {
        OpenEditor(0);
        TypeValue(refusal.typed);

        PressAndWaitForEnd(WXK_RETURN);

        EXPECT_EQ(Status(), refusal.shown);
    }
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
    for (const bool typedAgain : {false, true}) {
        OpenEditor(0);
        if (typedAgain) {
            TypeValue("1");
        }

        PressAndWaitForEnd(WXK_RETURN);

        EXPECT_THAT(host.InWords(), IsEmpty());
        EXPECT_EQ(Cell(0, 1), "1");
        EXPECT_EQ(Status(), "");
    }
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

// ---- Buttons while a value is being typed

TEST_F(VarGrid, ThrowsATypedValueAwayWhenItsVariableIsDeleted)
{
    OpenEditor(0);
    TypeValue("42");

    ClickAndWait(*remove, [this] { return grid->GetNumberRows() == 3; });

    EXPECT_THAT(Column(0), ElementsAre("MW 2", "MD 4", "MB 8"));
    EXPECT_THAT(host.InWords(), ElementsAre("release 0"));
}

TEST_F(VarGrid, SendsATypedValueBeforeAVariableIsDefined)
{
    OpenEditor(0);
    TypeValue("42");
    ExpectAddress("T9", "6");

    ClickAndWait(*define, [this] { return grid->GetNumberRows() == 5; });

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42", "read 4 MB6", "start 4"));
}

TEST_F(VarGrid, SendsATypedValueToTheOldVariableBeforeItIsModified)
{
    OpenEditor(0);
    TypeValue("42");
    ExpectAddress("T91", "6");

    ClickAndWait(*modify, [this] { return Cell(0, 0) == "MB 6"; });

    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42", "release 0", "read 0 MB6", "start 0"));
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
