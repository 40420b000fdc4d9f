#include "debuggertest.h"
#include "records.h"

#include <X11/keysym.h>

// The watch page: the bytes of its requests, one pass through each of its buttons, and what the
// host's other windows and a quick operator do to a value that is being typed.

namespace {

/// Positions in the settings dialog's boxes.
constexpr int inputs = 1;
constexpr int byte = 1;
constexpr int decimal = 0;
constexpr int hexadecimal = 1;

class WatchPage : public OpenDebugger
{
};

/// The list MW20, MW22, MW24, MW26 from a file, in decimal; ids 0 to 3.
class WatchList4 : public DebuggerTest
{
protected:
    void SetUp() override
    {
        UseList({"MW20/D", "MW22/D", "MW24/D", "MW26/D"});
        ASSERT_TRUE(Open());
        TakeRequests();
    }
};

} // namespace

TEST_F(WatchPage, ADefinedVariableIsRegisteredShownAndUpdated)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens("dialog [T9]"));
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

TEST_F(WatchList4, AModifiedVariableKeepsItsIdAndTheValueThatCameMeanwhile)
{
    ClickCell(1, 0);
    Click(modifyButton);
    ASSERT_TRUE(DialogOpens("dialog [T91]"));
    Answer(1, 7);
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 22|7|T30", "MW 24|?|T30", "MW 26|?|T30"}));
    ChooseInBox(formatBox, hexadecimal);
    TypeAddress("40");
    ClickInDialog(wxID_OK);

    EXPECT_TRUE(Requests({"release 1", "read 1 MW40", "start 1"}));
    EXPECT_TRUE(Shows({"MW 20|?|T30", "MW 40|0007|T31", "MW 24|?|T30", "MW 26|?|T30"}));
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

TEST_F(WhileEditing, AWindowOfTheHostThatTakesTheKeyboardEndsTheEdit)
{
    GtkWidget* alarm = OnGui(ShowAlarm);
    ASSERT_TRUE(hands.Activate(alarm));
    EXPECT_TRUE(Await("the editor closed", [] { return Typed() == "(closed)"; }));
    EXPECT_TRUE(SendsNothing()) << "half of a value";

    OnGui([alarm] { gtk_widget_destroy(alarm); });
    ASSERT_TRUE(FrameGetsKeyboard());
    hands.Type("5");
    hands.Press(XK_Return);
    EXPECT_TRUE(Requests({"write MW22=5"}));
}

TEST_F(WhileEditing, TheTypedTextIsDiscardedWhenTheHostEndsTheDebugger)
{
    Destroy();

    EXPECT_TRUE(Requests({"release 0", "release 1", "release 2", "release 3"}));
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
