#include "pointer.h"
#include "typing.h"

#include <gtk/gtk.h>
#include <wx/clipbrd.h>
#include <wx/dataobj.h>
#include <wx/frame.h>

#include <memory>

// What becomes of a half-typed value.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Another window of the process that takes the keyboard, as a host's alarm does.
class Alarm
{
public:
    Alarm() : m_frame(new wxFrame(nullptr, wxID_ANY, "alarm", {700, 500}, {200, 100}))
    {
        m_frame->Show();
        m_frame->Raise();
        EXPECT_TRUE(WaitFor("alarm has the keyboard", [this] { return m_frame->IsActive(); }));
    }

    ~Alarm() { m_frame->Destroy(); }

    Alarm(const Alarm&) = delete;
    Alarm(Alarm&&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    Alarm& operator=(Alarm&&) = delete;

private:
    wxFrame* m_frame;
};

void PutOnClipboard(const char* text)
{
    ASSERT_TRUE(wxTheClipboard->Open());
    ASSERT_TRUE(wxTheClipboard->SetData(new wxTextDataObject(text)));
    wxTheClipboard->Close();
}

} // namespace

// ---- What sends it

TEST_F(Typing, SendsAValueAtEachKeyThatEndsAnEntry)
{
    struct Ending
    {
        int key;
        int modifiers;
        int row;
        int column;
    };

    for (const Ending& ending :
         {Ending{WXK_RETURN, wxMOD_NONE, 1, varColumnValue},
          Ending{WXK_NUMPAD_ENTER, wxMOD_NONE, 1, varColumnValue},
          Ending{WXK_TAB, wxMOD_NONE, 0, varColumnFormat},
          Ending{WXK_TAB, wxMOD_SHIFT, 0, varColumnOperand}}) {
        TypeValue(0, "42");

        PressKey(ending.key, ending.modifiers);

        EXPECT_TRUE(WaitForEnd());
        EXPECT_TRUE(WaitForCursor(ending.row, ending.column));
        EXPECT_THAT(host.TakeInWords(), ElementsAre("write MB1=42"));
    }
}

TEST_F(Typing, SendsAValueOnceWhenAVariableIsDefined)
{
    TypeValue(0, "42");
    dialogs.Dialog("T9", [](wxDialog&) { PressKey(WXK_ESCAPE); });

    Click(Button(defineButton));

    ASSERT_TRUE(WaitFor("dialog", [this] { return dialogs.AllShown(); }));
    WaitThreeTicks();
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
}

TEST_F(Typing, ShowsWhyAValueWasRefusedThatDefineWouldHaveSent)
{
    TypeValue(0, "300");
    std::string shown;
    dialogs.Dialog("T9", [&](wxDialog&) {
        shown = Status();
        PressKey(WXK_ESCAPE);
    });

    Click(Button(defineButton));

    ASSERT_TRUE(WaitFor("dialog", [this] { return dialogs.AllShown(); }));
    EXPECT_EQ(shown, "T100 127");
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(Typing, SendsAPastedValueWithoutItsLineEnd)
{
    for (const char* pasted : {"42\n", "42\r\n", "42 \t\n"}) {
        PutOnClipboard(pasted);
        TypeValue(0, "7");
        PressKey('A', wxMOD_CONTROL);
        PressKey('V', wxMOD_CONTROL);
        ASSERT_TRUE(WaitForText("42"));

        PressKey(WXK_RETURN);

        EXPECT_TRUE(WaitForEnd());
        EXPECT_THAT(host.TakeInWords(), ElementsAre("write MB1=42"));
    }
}

TEST_F(Typing, SendsNoZeroForAPastedLineEnd)
{
    PutOnClipboard("\n");
    TypeValue(0, "7");
    PressKey('A', wxMOD_CONTROL);
    PressKey('V', wxMOD_CONTROL);
    ASSERT_TRUE(WaitForText("\n"));

    PressKey(WXK_RETURN);

    EXPECT_TRUE(WaitForEnd());
    EXPECT_EQ(Status(), "T89");
    EXPECT_THAT(host.InWords(), IsEmpty());
}

// ---- What throws it away

TEST_F(Typing, ThrowsAValueAwayWhenAnotherWindowTakesTheKeyboard)
{
    TypeValue(0, "123");
    {
        const Alarm alarm;
        ExpectDiscarded();
        Type("67");
        WaitThreeTicks();
    }

    ASSERT_TRUE(WaitForList()); // when the window comes back
    Type("8");
    EXPECT_TRUE(WaitForText("8"));
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(Typing, ThrowsAValueAwayWhenTheOperatorSwitchesThePageByKeys)
{
    for (const int key : {WXK_PAGEDOWN, WXK_PAGEUP}) {
        TypeValue(0, "123");

        PressKey(key, wxMOD_CONTROL);

        ASSERT_TRUE(WaitFor("other page", [this] { return notebook->GetSelection() == 1; }));
        EXPECT_TRUE(WaitForEnd());
        ASSERT_TRUE(WaitFor("subscribed", [this] { return !host.requests.empty(); }));
        PressKey(key, wxMOD_CONTROL);
        ASSERT_TRUE(WaitFor("back", [this] { return notebook->GetSelection() == 0; }));
        ASSERT_TRUE(WaitForList());
        EXPECT_EQ(Column(1)[0], "1");
        EXPECT_THAT(host.TakeInWords(), testing::Not(testing::Contains("write MB1=123")));
    }
}

TEST_F(Typing, ThrowsAValueAwayWhenTheOperatorClicksOnATab)
{
    TypeValue(0, "123");

    ClickTab(*notebook, 0);

    ExpectDiscarded();
}

TEST_F(Typing, ThrowsAValueAwayWhenAColumnIsDragged)
{
    TypeValue(0, "123");
    const int edge = grid->GetColSize(varColumnOperand) + grid->GetColSize(varColumnValue);
    const int middle = grid->GetColLabelSize() / 2;
    const int before = grid->GetColSize(varColumnValue);

    Drag(*grid->GetGridColLabelWindow(), {edge, middle}, {edge + 40, middle});

    EXPECT_TRUE(WaitFor("wider", [&] { return grid->GetColSize(varColumnValue) > before; }));
    ExpectDiscarded();
}

TEST_F(Typing, ThrowsAValueAwayWhenThePlaceBelowTheRowsIsClicked)
{
    TypeValue(0, "123");

    ClickAt(*grid->GetGridWindow(), {20, grid->GetRowHeight(0) * 5});

    ExpectDiscarded();
}

TEST_F(Typing, ThrowsAValueAwayWhenAPressOnAButtonEndsBesideIt)
{
    for (const int button : {defineButton, modifyButton}) {
        TypeValue(0, "123");
        const wxSize size = Button(button).GetSize();

        Drag(Button(button), {size.x / 2, size.y / 2}, {size.x / 2, size.y + 200});

        ExpectDiscarded();
    }
}

TEST_F(Typing, ThrowsAValueAwayAtFileCommands)
{
    TypeValue(0, "123");

    Choose(wxID_SAVE);

    ExpectDiscarded();
}

TEST_F(Typing, ThrowsAValueAwayWhenTheWindowIsMinimised)
{
    TypeValue(0, "123");

    frame->Iconize();

    ExpectDiscarded();
}

// ---- What leaves it alone

TEST_F(Typing, GoesOnAfterAMenuOfTheWindow)
{
    TypeValue(0, "12");
    PressKey(WXK_F10);
    const auto menuOpen = [] { return GTK_IS_MENU_SHELL(gtk_grab_get_current()); };
    ASSERT_TRUE(WaitFor("menu", menuOpen));
    WaitThreeTicks();

    PressKey(WXK_ESCAPE);
    if (!WaitFor("menu gone", [&] { return !menuOpen(); })) {
        PressKey(WXK_ESCAPE);
    }

    WaitThreeTicks();
    ASSERT_TRUE(grid->IsCellEditControlShown());
    Type("3");
    EXPECT_TRUE(WaitForText("123"));
    PressKey(WXK_RETURN);
    EXPECT_TRUE(WaitForEnd());
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=123"));
}

TEST_F(Typing, StaysInItsCellAtKeysThatMoveByRows)
{
    TypeValue(0, "12");
    for (const int key : {WXK_UP, WXK_DOWN, WXK_PAGEUP, WXK_PAGEDOWN}) {
        PressKey(key);
    }
    Type("3");

    EXPECT_TRUE(WaitForText("123"));
    EXPECT_THAT(host.InWords(), IsEmpty());
}

/// A window as low as it can be, with more variables than it shows.
class TypingInALongList : public Typing
{
protected:
    static constexpr int count = 12;

    void SetUp() override
    {
        Typing::SetUp();
        std::string list;
        for (int byte = 1; byte <= count; ++byte) {
            list += "MB" + std::to_string(byte) + "/D\n";
        }
        panel->LoadFile(dir.Write("long.plc", list));
        frame->SetSize(600, frame->GetMinHeight());
        ASSERT_TRUE(WaitFor("a list that scrolls", [this] {
            return grid->GetNumberRows() == count &&
                   grid->GetGridWindow()->GetSize().y < count / 2 * grid->GetDefaultRowSize();
        }));
        RunPending();
        host.requests.clear();
    }
};

TEST_F(TypingInALongList, KeepsItsPlaceWhenTheWheelIsTurned)
{
    TypeValue(0, "12");

    TurnWheel(*grid->GetGridWindow(), WheelTurn::Down, 5);
    Type("3");

    EXPECT_TRUE(WaitForText("123"));
    WaitThreeTicks();
    EXPECT_EQ(grid->GetViewStart(), wxPoint(0, 0));
    PressKey(WXK_ESCAPE);
    EXPECT_TRUE(WaitForEnd());

    TurnWheel(*grid->GetGridWindow(), WheelTurn::Down, 5);

    EXPECT_TRUE(WaitFor("scrolled", [this] { return grid->GetViewStart().y > 0; }));
}

TEST_F(TypingInALongList, GoesOnInTheRowThatReturnScrollsIntoView)
{
    for (int row = 0; row < count - 1; ++row) { // a complaint of the toolkit fails a test
        TypeValue(row, "12");
        PressKey(WXK_RETURN);
        ASSERT_TRUE(WaitForCursor(row + 1, 1));
    }

    EXPECT_TRUE(WaitFor("scrolled", [this] { return grid->GetViewStart().y > 0; }));
    EXPECT_TRUE(WaitFor("writes", [this] { return host.InWords().size() == count - 1; }));
}
