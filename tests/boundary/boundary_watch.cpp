#include "debuggertest.h"
#include "doubleclicktime.h"
#include "records.h"

#include <gmock/gmock.h>
#include <wx/textctrl.h>

#include <X11/keysym.h>
#include <memory>

// The watch page: define, modify, delete, and what requests and answers do.

namespace {

const std::string defineDialog = "dialog [T9]";
const std::string modifyDialog = "dialog [T91]";

/// Positions in the settings dialog's boxes.
enum Area
{
    outputs,
    inputs,
    flags,
    dataBlocks,
    timers,
    counters
};

enum Format
{
    decimal,
    hexadecimal,
    binary,
    floatingPoint
};

enum Size
{
    bit,
    byte,
    word,
    doubleWord
};

class WatchPage : public OpenDebugger
{
protected:
    int SelectionIn(ControlId box)
    {
        return OnGui([this, box] {
            wxWindow* window = wxWindow::FindWindowById(box, watch.Innermost());
            return dynamic_cast<wxItemContainerImmutable&>(*window).GetSelection();
        });
    }

    std::string AddressShown()
    {
        return OnGui([this] {
            wxWindow* window = wxWindow::FindWindowById(addressField, watch.Innermost());
            return static_cast<wxTextCtrl*>(window)->GetValue().utf8_string();
        });
    }
};

/// The list MW20, MW22, MW24, MW26 from a file, in decimal; ids 0 to 3.
class WatchList4 : public WatchPage
{
protected:
    void SetUp() override
    {
        UseList({"MW20/D", "MW22/D", "MW24/D", "MW26/D"});
        ASSERT_TRUE(Open());
        TakeRequests();
    }
};

using Rows = std::vector<int>;

} // namespace

TEST_F(WatchPage, ADefinedVariableIsRegisteredShownAndUpdated)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    EXPECT_EQ(SelectionIn(areaCombo), outputs) << "an empty list starts from a new variable";
    EXPECT_EQ(SelectionIn(sizeBox), bit);
    EXPECT_EQ(SelectionIn(formatBox), binary);
    ChooseInCombo(areaCombo, inputs);
    ChooseInBox(sizeBox, byte);
    ChooseInBox(formatBox, decimal);
    TypeAddress("10");
    ClickInDialog(wxID_OK);

    ASSERT_TRUE(Await("two requests", [this] { return host.requests.size() == 2; }));
    const std::vector<RecordedRequest> sent = OnGui([this] { return host.requests; });
    EXPECT_EQ(sent[0].callback, RecordedRequest::Callback::Read);
    EXPECT_EQ(
        BytesOf(sent[0].record),
        (std::vector<std::uint8_t>{
            0x0D, 0x60, 0x0B, 0x00, 0x00, 0x00, 0x45, 0x42, 0x31, 0x30, 0x00}));
    EXPECT_EQ(sent[1].callback, RecordedRequest::Callback::Delete);
    EXPECT_EQ(
        BytesOf(sent[1].record),
        (std::vector<std::uint8_t>{0x0F, 0x60, 0x08, 0x00, 0x00, 0x00, 0x01, 0x00}));
    EXPECT_TRUE(Shows({"EB 10|?|T30"}));
    Answer(0, 42);
    EXPECT_TRUE(Shows({"EB 10|42|T30"}));
}

TEST_F(WatchPage, DataBlocksTimersAndCountersAreRegisteredUnderTheirNames)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    ChooseInCombo(areaCombo, dataBlocks);
    ChooseInCombo(dataBlockCombo, 5);
    TypeAddress("10.3");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(Requests({"read 0 DB10.DBX10.3", "start 0"}));

    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    ChooseInCombo(areaCombo, timers);
    TypeAddress("5");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(Requests({"read 1 T5", "start 1"}));

    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    ChooseInCombo(areaCombo, counters);
    TypeAddress("12");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(Requests({"read 2 Z12", "start 2"}));
    EXPECT_TRUE(Shows({"DB10.DBX 10.3|?|T32", "T 5|?|T30", "Z 12|?|T30"}));
}

TEST_F(WatchPage, EnterInTheAddressFieldConfirmsTheDefinition)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    TypeAddress("3.5");
    hands.Press(XK_Return);

    EXPECT_TRUE(Requests({"read 0 A3.5", "start 0"}));
    EXPECT_TRUE(Shows({"A 3.5|?|T32"}));
}

TEST_F(WatchPage, ARefusedAddressIsReportedAndTheSettingsStayOpen)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    TypeAddress("64.0");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(AnswerDialog("message [T97] T88 64", wxID_OK));

    ASSERT_TRUE(DialogOpens(defineDialog));
    EXPECT_EQ(AddressShown(), "64.0");
    TypeAddress("63.0");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(Requests({"read 0 A63.0", "start 0"}));
}

TEST_F(WatchPage, ACancelledDefinitionChangesNothing)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens(defineDialog));
    TypeAddress("3.5");
    ClickInDialog(wxID_CANCEL);

    EXPECT_TRUE(SendsNothing());
    EXPECT_TRUE(Shows({}));
    CloseFrame(); // asks nothing: the list is not modified
    EXPECT_TRUE(FrameGoes());
}

TEST_F(WatchPage, ModifyAndDeleteWithNothingSelectedAreRefused)
{
    Click(modifyButton);
    EXPECT_TRUE(AnswerDialog("message [T85] T94", wxID_OK));

    Click(deleteButton);
    EXPECT_TRUE(AnswerDialog("message [T85] T95", wxID_OK));

    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchPage, TheTwentyFirstVariableIsRefused)
{
    for (int number = 0; number < 20; ++number) {
        Define(std::to_string(number) + ".0");
        ASSERT_TRUE(Await("requests", [this] { return host.requests.size() == 2; }));
        TakeRequests();
    }

    Define("20.0");

    EXPECT_TRUE(AnswerDialog("message [T85] T98 20", wxID_OK));
    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(OnGui(WatchList).size(), 20U);
}

TEST_F(WatchPage, TheSameOperandTwiceHasTwoIdsAndTwoRows)
{
    Define("1.0");
    Define("1.0");
    ASSERT_TRUE(Requests({"read 0 A1.0", "start 0", "read 1 A1.0", "start 1"}));

    Answer(1, 1);

    EXPECT_TRUE(Shows({"A 1.0|?|T32", "A 1.0|1|T32"}));
}

TEST_F(WatchPage, AVariableDefinedAfterNewGetsTheNextId)
{
    Define("1.0");
    ASSERT_TRUE(Requests({"read 0 A1.0", "start 0"}));
    ChooseMenu(wxID_NEW);
    ASSERT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    ASSERT_TRUE(Requests({"release 0"}));

    Define("2.0");

    EXPECT_TRUE(Requests({"read 1 A2.0", "start 1"}));
}

TEST_F(WatchPage, TheFirstDefinedRowIsSelected)
{
    Define("1.0");

    EXPECT_TRUE(Selects({0}));
    Click(deleteButton);
    EXPECT_TRUE(Requests({"read 0 A1.0", "start 0", "release 0"}));
    EXPECT_TRUE(Shows({}));
}

TEST_F(WatchList4, DefineStartsFromTheSelectedVariable)
{
    ClickCell(2, 0);
    ASSERT_TRUE(Selects({2}));

    Click(defineButton);

    ASSERT_TRUE(DialogOpens(defineDialog));
    EXPECT_EQ(SelectionIn(areaCombo), flags);
    EXPECT_EQ(SelectionIn(sizeBox), word);
    EXPECT_EQ(SelectionIn(formatBox), decimal);
    EXPECT_EQ(AddressShown(), "24");
    EXPECT_TRUE(AnswerDialog(defineDialog, wxID_CANCEL));
}

TEST_F(WatchList4, ANewVariableShowsAQuestionMarkAlsoWhenItsTemplateHasAValue)
{
    Answer(0, 77);
    ASSERT_TRUE(Await("the value shown", [] { return WatchList()[0] == "MW 20|77|T30"; }));

    Define("30");

    EXPECT_TRUE(Requests({"read 4 MW30", "start 4"}));
    EXPECT_TRUE(Await(
        "the new row", [] { return WatchList().size() == 5 && WatchList()[4] == "MW 30|?|T30"; }));
}

TEST_F(WatchList4, AnAnswerThatEqualsTheStoredValueRefreshesTheRow)
{
    Answer(1, 0);

    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 22|0|T30", "MW 24|?|T30", "MW 26|?|T30"}));
}

TEST_F(WatchList4, AnAnswerWithAnUnknownKeyIsIgnored)
{
    EXPECT_EQ(Answer(99, 5), 1);
    EXPECT_EQ(Answer(2, 5), 1);

    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 22|?|T30", "MW 24|5|T30", "MW 26|?|T30"}));
}

TEST_F(WatchList4, AWordValueIsShownSignedWhateverTheUpperHalfHolds)
{
    Answer(0, 0x1FFFE);
    Answer(1, -1);

    EXPECT_TRUE(Shows({"MW 20|-2|T30", "MW 22|-1|T30", "MW 24|?|T30", "MW 26|?|T30"}));
}

TEST_F(WatchList4, ModifyReleasesTheOldVariableAndRegistersTheNewOneUnderTheSameId)
{
    ClickCell(1, 0);
    Click(modifyButton);
    ASSERT_TRUE(DialogOpens(modifyDialog));
    EXPECT_EQ(AddressShown(), "22");
    ChooseInBox(formatBox, hexadecimal);
    TypeAddress("40");
    ClickInDialog(wxID_OK);

    EXPECT_TRUE(Requests({"release 1", "read 1 MW40", "start 1"}));
    EXPECT_TRUE(Await("the row changed", [] {
        return WatchList()[1].substr(0, 6) == "MW 40|" && WatchList().size() == 4;
    }));
    Answer(1, 255);
    EXPECT_TRUE(Await("the value", [] { return WatchList()[1] == "MW 40|00FF|T31"; }));
}

TEST_F(WatchList4, AnAnswerDuringModifySurvivesIt)
{
    ClickCell(1, 0);
    Click(modifyButton);
    ASSERT_TRUE(DialogOpens(modifyDialog));
    Answer(1, 7);
    ASSERT_TRUE(Await("the row shows it", [] { return WatchList()[1] == "MW 22|7|T30"; }));
    ChooseInBox(formatBox, hexadecimal);
    ClickInDialog(wxID_OK);

    EXPECT_TRUE(Await("the format changed", [] { return WatchList()[1] == "MW 22|0007|T31"; }));
}

TEST_F(WatchList4, ACancelledModifyChangesNothing)
{
    ClickCell(1, 0);
    Click(modifyButton);
    ASSERT_TRUE(DialogOpens(modifyDialog));
    ChooseInBox(formatBox, hexadecimal);
    ClickInDialog(wxID_CANCEL);

    EXPECT_TRUE(SendsNothing());
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 22|?|T30", "MW 24|?|T30", "MW 26|?|T30"}));
}

TEST_F(WatchList4, ModifyWithTwoRowsSelectedIsRefused)
{
    ClickCell(1, 0);
    ASSERT_TRUE(Selects({1}));
    ClickCell(2, 0, XK_Shift_L);
    ASSERT_TRUE(Selects({1, 2}));

    Click(modifyButton);

    EXPECT_TRUE(AnswerDialog("message [T85] T93", wxID_OK));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, DeletingTheLastRowDeletesThatRowOnly)
{
    ClickCell(3, 0);
    ASSERT_TRUE(Selects({3}));

    Click(deleteButton);

    EXPECT_TRUE(Requests({"release 3"}));
    EXPECT_TRUE(SendsNothing());
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 22|?|T30", "MW 24|?|T30"}));
}

TEST_F(WatchList4, DeletingABlockReleasesItInListOrder)
{
    ClickCell(1, 0);
    ASSERT_TRUE(Selects({1}));
    ClickCell(3, 0, XK_Shift_L);
    ASSERT_TRUE(Selects({1, 2, 3}));

    Click(deleteButton);

    EXPECT_TRUE(Requests({"release 1", "release 2", "release 3"}));
    EXPECT_TRUE(Shows({"MW 20|?|T30"}));
}

TEST_F(WatchList4, RowsAddedByControlClickAreAllDeleted)
{
    ClickCell(1, 0);
    ASSERT_TRUE(Selects({1}));
    ClickCell(3, 0, XK_Control_L);
    ASSERT_TRUE(Selects({1, 3}));

    Click(deleteButton);

    EXPECT_TRUE(Requests({"release 1", "release 3"}));
    EXPECT_TRUE(SendsNothing());
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 24|?|T30"}));
}

TEST_F(WatchList4, AnAnswerForADeletedVariableChangesNothing)
{
    ClickCell(1, 0);
    Click(deleteButton);
    ASSERT_TRUE(Requests({"release 1"}));

    Answer(1, 5);
    Answer(0, 6);

    EXPECT_TRUE(Shows({"MW 20|6|T30", "MW 24|?|T30", "MW 26|?|T30"}));
}

TEST_F(WatchList4, ATypedValueIsWrittenOnceAndTheCellReturnsToTheLastValueRead)
{
    Answer(1, 3);
    ASSERT_TRUE(Await("the value shown", [] { return WatchList()[1] == "MW 22|3|T30"; }));

    EnterValue(1, "-5");

    ASSERT_TRUE(Await("one request", [this] { return host.requests.size() == 1; }));
    const RecordedRequest write = OnGui([this] { return host.requests.front(); });
    EXPECT_EQ(write.callback, RecordedRequest::Callback::Write);
    EXPECT_EQ(
        BytesOf(write.record),
        (std::vector<std::uint8_t>{
            0x0E, 0x60, 0x0F, 0, 0, 0, 0xFB, 0xFF, 0xFF, 0xFF, 'M', 'W', '2', '2', 0}));
    TakeRequests();
    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(OnGui(WatchList)[1], "MW 22|3|T30");
    Answer(1, -5);
    EXPECT_TRUE(Await("the new value", [] { return WatchList()[1] == "MW 22|-5|T30"; }));
}

TEST_F(WatchList4, AnInvalidValueIsReportedUntilTheOperatorMovesOn)
{
    EnterValue(1, "12a");

    EXPECT_TRUE(StatusReads("T89"));
    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(OnGui(StatusText), "T89") << "the cursor's own step after Enter does not clear it";
    ClickCell(0, 0);
    EXPECT_TRUE(StatusReads(""));
}

TEST_F(WatchList4, AnInvalidValueInTheLastRowIsReportedToo)
{
    EnterValue(3, "12a");

    EXPECT_TRUE(StatusReads("T89"));
    AwaitThreeTicks();
    EXPECT_EQ(OnGui(StatusText), "T89");
    hands.Press(XK_Up);
    EXPECT_TRUE(StatusReads(""));
}

TEST_F(WatchList4, AValueOutsideItsRangeIsReportedWithTheBound)
{
    EnterValue(1, "32768");
    EXPECT_TRUE(StatusReads("T100 32767"));

    EnterValue(1, "-32769");
    EXPECT_TRUE(StatusReads("T106 -32768"));

    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, AButtonClearsTheReport)
{
    EnterValue(1, "12a");
    ASSERT_TRUE(StatusReads("T89"));

    Click(defineButton);

    ASSERT_TRUE(DialogOpens(defineDialog));
    EXPECT_TRUE(StatusReads(""));
    EXPECT_TRUE(AnswerDialog(defineDialog, wxID_CANCEL));
}

TEST_F(WatchList4, SwitchingThePageClearsTheReport)
{
    EnterValue(1, "12a");
    ASSERT_TRUE(StatusReads("T89"));

    ASSERT_TRUE(ShowPage(programPage));

    EXPECT_TRUE(StatusReads(""));
}

namespace {

/// An editor open in the value cell of row 1, "4" typed.
class WhileEditing : public WatchList4
{
protected:
    void SetUp() override
    {
        WatchList4::SetUp();
        BeginToType();
    }

    void BeginToType()
    {
        ASSERT_TRUE(ChooseValue(1));
        hands.Type("4");
        ASSERT_TRUE(Await("the editor open", [] { return Typed() == "4"; }));
    }

    /// @return a window of the host, on the screen.
    static GtkWidget* ShowAlarm()
    {
        GtkWidget* alarm = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_widget_show(alarm);
        return alarm;
    }
};

} // namespace

TEST_F(WhileEditing, AnswersLeaveTheTypedTextAndUpdateTheOtherRows)
{
    const int width = OnGui([] { return GridOn(watchPage).GetColSize(1); });

    Answer(1, 1000);
    Answer(2, -12345);

    EXPECT_TRUE(
        Await("the other row updated", [] { return WatchList()[2] == "MW 24|-12345|T30"; }));
    EXPECT_EQ(OnGui(Typed), "4");
    EXPECT_EQ(OnGui([] { return GridOn(watchPage).GetColSize(1); }), width);
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WhileEditing, EscapeShowsTheLatestValueAndWritesNothing)
{
    Answer(1, 1000);
    AwaitThreeTicks();

    hands.Press(XK_Escape);

    EXPECT_TRUE(Await("the latest value", [] { return WatchList()[1] == "MW 22|1000|T30"; }));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WhileEditing, ResizingTheWindowWritesNothing)
{
    OnGui([] { Frame()->SetSize(700, 400); });
    ASSERT_TRUE(AwaitStill());

    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(OnGui(Typed), "4");
    hands.Press(XK_Return);
    EXPECT_TRUE(Requests({"write MW22=4"}));
}

TEST_F(WhileEditing, NewDiscardsTheTypedText)
{
    ChooseMenu(wxID_NEW);

    EXPECT_TRUE(Requests({"release 0", "release 1", "release 2", "release 3"}));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WhileEditing, NewOfAChangedListDiscardsTheTypedTextBeforeItAsks)
{
    hands.Press(XK_Escape);
    ASSERT_TRUE(Await("the editor closed", [] { return Typed() == "(closed)"; }));
    Define("30");
    ASSERT_TRUE(Requests({"read 4 MW30", "start 4"}));
    BeginToType();

    ChooseMenu(wxID_NEW);

    ASSERT_TRUE(DialogOpens("question [T79] T78"));
    EXPECT_EQ(OnGui(Typed), "(closed)");
    EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    EXPECT_TRUE(Requests({"release 0", "release 1", "release 2", "release 3", "release 4"}));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WhileEditing, TheCloseBoxDiscardsTheTypedText)
{
    CloseFrame();

    EXPECT_TRUE(FrameGoes());
    EXPECT_TRUE(Requests({"release 0", "release 1", "release 2", "release 3"}));
}

TEST_F(WhileEditing, AnotherWindowThatTakesTheKeyboardLeavesTheEditorWaiting)
{
    GtkWidget* alarm = OnGui(ShowAlarm);
    ASSERT_TRUE(hands.Activate(alarm));
    EXPECT_TRUE(SendsNothing()) << "half of a value";

    OnGui([alarm] { gtk_widget_destroy(alarm); });
    ASSERT_TRUE(FrameGetsKeyboard());
    hands.Type("5");
    hands.Press(XK_Return);
    EXPECT_TRUE(Requests({"write MW22=45"}));
}

TEST_F(WhileEditing, TheTypedTextIsDiscardedWhenTheHostEndsTheDebuggerFromAnotherWindow)
{
    GtkWidget* alarm = OnGui(ShowAlarm);
    ASSERT_TRUE(hands.Activate(alarm));

    Destroy();

    EXPECT_TRUE(Requests({"release 0", "release 1", "release 2", "release 3"}));
    OnGui([alarm] { gtk_widget_destroy(alarm); });
}

TEST_F(WhileEditing, AClickOnAnotherCellCommitsTheValue)
{
    ClickCell(0, 0);

    EXPECT_TRUE(Requests({"write MW22=4"}));
}

TEST_F(WhileEditing, DeleteDiscardsTheTypedTextAndWritesItToNoOtherVariable)
{
    Click(deleteButton);

    EXPECT_TRUE(Requests({"release 1"}));
    EXPECT_TRUE(SendsNothing());
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 24|?|T30", "MW 26|?|T30"}));
}

TEST_F(WhileEditing, DefineCommitsTheValueToItsOwnVariable)
{
    Click(defineButton);

    ASSERT_TRUE(DialogOpens(defineDialog));
    EXPECT_TRUE(Requests({"write MW22=4"}));
    EXPECT_TRUE(AnswerDialog(defineDialog, wxID_CANCEL));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WhileEditing, ModifyCommitsTheValueToItsOldVariable)
{
    Click(modifyButton);

    ASSERT_TRUE(DialogOpens(modifyDialog));
    TypeAddress("40");
    ClickInDialog(wxID_OK);
    EXPECT_TRUE(Requests({"write MW22=4", "release 1", "read 1 MW40", "start 1"}));
    EXPECT_TRUE(SendsNothing());
}

// A quick operator on a busy machine: the window finds several keys at once.

TEST_F(WatchList4, AValueBegunBeforeTheWindowCouldFollowIsWrittenWhole)
{
    ASSERT_TRUE(ChooseValue(0));
    OnGui([this] {
        hands.Type("12");
        hands.Press(XK_Return);
        hands.Type("3");
    });
    AwaitThreeTicks();

    hands.Type("4");
    hands.Press(XK_Return);

    EXPECT_TRUE(Requests({"write MW20=12", "write MW22=34"}));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, AValueTypedRightAfterEscapeIsWrittenWhole)
{
    ASSERT_TRUE(ChooseValue(0));
    OnGui([this] {
        hands.Type("12");
        hands.Press(XK_Escape);
        hands.Type("34");
        hands.Press(XK_Return);
    });

    EXPECT_TRUE(Requests({"write MW20=34"}));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, AnEditWithoutChangeWritesNothing)
{
    Answer(1, 3);
    ASSERT_TRUE(Await("the value shown", [] { return WatchList()[1] == "MW 22|3|T30"; }));

    EnterValue(1, "3");

    EXPECT_TRUE(Await("the value shown", [] { return WatchList()[1] == "MW 22|3|T30"; }));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, EnterOnANameOpensModify)
{
    ClickCell(1, 0);
    ASSERT_TRUE(Selects({1}));

    hands.Press(XK_Return);

    EXPECT_TRUE(AnswerDialog(modifyDialog, wxID_CANCEL));
}

TEST_F(WatchList4, EnterOnAValueOpensTheEditor)
{
    ClickCell(1, 1);
    ASSERT_TRUE(Selects({1}));

    hands.Press(XK_Return);

    EXPECT_TRUE(
        Await("the editor open", [] { return GridOn(watchPage).IsCellEditControlShown(); }));
    hands.Press(XK_Escape);
    EXPECT_TRUE(SendsNothing());
}

TEST_F(WatchList4, EnterWithTwoRowsSelectedDoesNothing)
{
    ClickCell(1, 0);
    ASSERT_TRUE(Selects({1}));
    ClickCell(2, 0, XK_Shift_L);
    ASSERT_TRUE(Selects({1, 2}));

    hands.Press(XK_Return);

    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(OnGui(SelectedRows), (Rows{1, 2}));
}

TEST_F(WatchList4, ADoubleClickOnANameOpensModify)
{
    DoubleClickCell(2, 0);

    ASSERT_TRUE(DialogOpens(modifyDialog));
    EXPECT_EQ(AddressShown(), "24");
    EXPECT_TRUE(AnswerDialog(modifyDialog, wxID_CANCEL));
}

TEST_F(WatchList4, ADoubleClickOnAValueDoesNothing)
{
    for (const XKey key :
         {XKey{XK_Up}, XKey{XK_Down}}) { // Down leads to the cell of the double click
        ASSERT_TRUE(ChooseValue(1));
        hands.Press(key);
        ASSERT_TRUE(Selects({key == XK_Up ? 0 : 2}));

        DoubleClickCell(2, 1);
        AwaitThreeTicks();
        auto time = OnGui([] { return std::make_unique<DoubleClickTime>(); });
        EXPECT_TRUE(Await("the double-click time over", [&time] { return time->IsOver(); }));
        OnGui([&time] { time.reset(); });

        EXPECT_FALSE(OnGui([] { return GridOn(watchPage).IsCellEditControlShown(); }));
        EXPECT_EQ(OnGui(SelectedRows), (Rows{2}));
    }
}

TEST_F(WatchList4, AClickOnTheCursorCellKeepsItsRowSelected)
{
    ClickCell(1, 1);
    ASSERT_TRUE(Selects({1}));

    ClickCell(1, 1);
    AwaitThreeTicks();

    EXPECT_EQ(OnGui(SelectedRows), (Rows{1}));
    Click(deleteButton);
    EXPECT_TRUE(Requests({"release 1"}));
}

TEST_F(WatchList4, AVeryNarrowWindowKeepsTheLastColumn)
{
    OnGui([] { Frame()->SetSize(120, 300); });
    ASSERT_TRUE(AwaitStill());
    Answer(0, 5);
    ASSERT_TRUE(Await("the value shown", [] { return WatchList()[0] == "MW 20|5|T30"; }));

    EXPECT_TRUE(OnGui([] { return GridOn(watchPage).IsColShown(2); }));
}
