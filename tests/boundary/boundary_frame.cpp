#include "debuggertest.h"
#include "projectfile.h"

#include <X11/keysym.h>
#include <filesystem>
#include <fstream>

// The frame: its size, the languages that are shipped, one pass through each of its commands, and
// what an exit asks.

namespace {

/// @return the first line of a file that begins so; empty when there is none.
std::string LineOf(const std::filesystem::path& path, const std::string& beginning)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(beginning, 0) == 0) {
            return line;
        }
    }
    return "";
}

class FrameTest : public DebuggerTest
{
protected:
    void PressCtrl(XKey letter)
    {
        ASSERT_TRUE(FrameGetsKeyboard());
        hands.Press(letter, XK_Control_L);
    }

    void DefineAndAwaitRequests(const std::string& address)
    {
        Define(address);
        ASSERT_TRUE(Await("requests", [this] { return host.requests.size() >= 2; }));
    }

    /// @return the line of the configuration file that names the last list; empty without one.
    std::string LastFileLine() { return LineOf(files.File("plcdebug.ini"), "PLCLastFile="); }
};

const std::string saveQuestion = "question [T79] T78";

} // namespace

TEST_F(FrameTest, AcceleratorsRunTheCommands)
{
    UseLetters();
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    PressCtrl(XK_i);
    EXPECT_TRUE(AnswerDialog("dialog [T67]", wxID_OK));
    PressCtrl(XK_n);
    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_TRUE(Shows({}));
    PressCtrl(XK_o);
    EXPECT_TRUE(AnswerDialog("file dialog [T76]", wxID_CANCEL));
    PressCtrl(XK_q);
    EXPECT_TRUE(Await("the frame hidden", [] { return !Frame()->IsShown(); }));
}

TEST_F(FrameTest, TheShippedLanguagesAreUsedByName)
{
    const std::filesystem::path folder = ProjectFile("languages");
    Configure("LanguagePath", folder.string());
    for (const std::string language : {"en", "de"}) {
        SCOPED_TRACE(language);
        Configure("Language", language);

        ASSERT_TRUE(Open());

        EXPECT_EQ(
            "49=" + OnGui([] { return Frame()->GetTitle().utf8_string(); }),
            LineOf(folder / (language + ".lng"), "49="));
        Destroy();
    }
}

TEST_F(FrameTest, TheFrameIs600By480AndAtMost514High)
{
    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([this] { return host.tallFrameCalls; }), 1);
    EXPECT_EQ(OnGui([] { return Frame()->GetSize(); }), wxSize(600, 480));
    EXPECT_EQ(OnGui([] { return Frame()->GetMaxSize(); }), wxSize(-1, 514));
}

TEST_F(FrameTest, TheFrameIsAsLargeAgainWhenADialogHasBeenShown)
{
    ASSERT_TRUE(Open());
    ChooseMenu(wxID_HELP);
    ASSERT_TRUE(AnswerDialog("dialog [T67]", wxID_OK));
    Destroy();
    ASSERT_TRUE(FrameGoes());

    ASSERT_TRUE(Open());

    const XWindow window = OnGui([] { return TopLevelWindowOf(Frame()->GetHandle()); });
    EXPECT_TRUE(Await("600 by 480 on the screen", [this, window] {
        return hands.OuterSize(window) == std::pair(600, 480);
    })) << hands.OuterSize(window).second;
}

TEST_F(FrameTest, SaveWithChangesWritesTheCurrentFile)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    DefineAndAwaitRequests("22");

    ChooseMenu(wxID_SAVE);

    EXPECT_TRUE(Await("saved", [this] { return files.Read("list.plc") == "MW20/D\nMW22/D\n"; }));
    CloseFrame(); // asks nothing any more
    EXPECT_TRUE(FrameGoes());
}

TEST_F(FrameTest, SaveAsWritesAlsoWithoutChanges)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_SAVEAS);
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(ChooseFile(files.File("other.plc")));

    EXPECT_TRUE(Await("saved", [this] { return files.Read("other.plc") == "MW20/D\n"; }));
    CloseFrame();
    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(LastFileLine(), "PLCLastFile=" + files.File("other.plc"));
}

TEST_F(FrameTest, CloseEmptiesTheListAsNewDoes)
{
    UseList({"MW20/D", "MW22/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    ChooseMenu(wxID_CLOSE);

    EXPECT_TRUE(Requests({"release 0", "release 1"}));
    EXPECT_TRUE(Shows({}));
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\nMW22/D\n");
}

TEST_F(FrameTest, OpenLoadsTheChosenFileAndRemembersIt)
{
    UseList({"MW20/D"});
    files.Write("other.plc", "EB1/H\nEB2/H\n");
    ASSERT_TRUE(Open());
    TakeRequests();

    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(DialogOpens("file dialog [T76]"));
    ASSERT_TRUE(ChooseFile(files.File("other.plc")));

    EXPECT_TRUE(Requests({"release 0", "read 1 EB1", "start 1", "read 2 EB2", "start 2"}));
    EXPECT_TRUE(Shows({"EB 1|?|T31", "EB 2|?|T31"}));
    CloseFrame();
    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(LastFileLine(), "PLCLastFile=" + files.File("other.plc"));
}

TEST_F(FrameTest, TheCloseBoxReleasesAndHidesBeforeItAsksWhetherAndWhereToSave)
{
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("1.0");
    TakeRequests();

    CloseFrame();

    ASSERT_TRUE(DialogOpens(saveQuestion));
    EXPECT_TRUE(Requests({"release 0"}));
    AwaitThreeTicks();
    EXPECT_FALSE(OnGui([] { return Frame()->IsShown(); }));
    EXPECT_FALSE(OnGui([] { return gtk_widget_get_visible(Frame()->GetHandle()) != FALSE; }));
    EXPECT_TRUE(AnswerDialog(saveQuestion, wxID_YES));
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(ChooseFile(files.File("late.plc")));
    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(files.Read("late.plc"), "A1.0/B\n");
    EXPECT_EQ(LastFileLine(), "PLCLastFile=" + files.File("late.plc"));
}

TEST_F(FrameTest, DestroyOffersToSaveToo)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    DefineAndAwaitRequests("22");
    TakeRequests();

    PostToGui([this] { plugin.destroy(); });
    EXPECT_TRUE(AnswerDialog(saveQuestion, wxID_YES));

    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\nMW22/D\n");
    EXPECT_TRUE(Requests({"release 0", "release 1"}));
}

TEST_F(FrameTest, TheProgramPageSubscribesWhenItIsShownAndStopsWhenItIsLeft)
{
    ASSERT_TRUE(Open());
    EXPECT_TRUE(SendsNothing()) << "the hidden page asks for nothing";

    ASSERT_TRUE(ShowPage(programPage));
    EXPECT_TRUE(Requests({"state 0..1 count 2"}));
    EXPECT_TRUE(SendsNothing()) << "a subscription, not a poll";

    ASSERT_TRUE(ShowPage(watchPage));
    EXPECT_TRUE(Requests({"stop"}));
    EXPECT_TRUE(SendsNothing());
}

TEST_F(FrameTest, AMenuOpenedByKeyWhileAnotherProgramHoldsThePointerTakesNoInputAway)
{
    ASSERT_TRUE(Open());
    Click(defineButton);
    ASSERT_TRUE(DialogOpens("dialog [T9]"));
    FocusCombo(areaCombo);

    ASSERT_TRUE(hands.HoldPointer());
    hands.Press(XK_Down, XK_Alt_L);
    AwaitThreeTicks();
    hands.ReleasePointer();

    ClickInDialog(wxID_CANCEL);
    EXPECT_TRUE(Await("the dialog closed", [this] { return watch.Innermost() == nullptr; }));
}
