#include "debuggertest.h"
#include "numberedtexts.h"
#include "projectfile.h"

#include <gmock/gmock.h>
#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/stattext.h>

#include <X11/keysym.h>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <fstream>

// The frame: configuration, texts, menus, file commands, the info dialog and the shutdown.

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

    /// @return a property of the open file dialog.
    std::string OfFileDialog(wxString (wxFileDialog::*property)() const)
    {
        return OnGui([this, property] {
            return (static_cast<wxFileDialog&>(*watch.Innermost()).*property)().utf8_string();
        });
    }

    /// @return true once the request sent last has @p part in its words.
    testing::AssertionResult LastRequestHas(const std::string& part)
    {
        return Await("a request with " + part, [this, part] {
            return !host.requests.empty() &&
                   host.requests.back().InWords().find(part) != std::string::npos;
        });
    }

    /// @return what the static texts of the open dialog read.
    Words TextsInDialog()
    {
        return OnGui([this] {
            Words texts;
            for (const wxWindow* child : watch.Innermost()->GetChildren()) {
                if (const auto* text = dynamic_cast<const wxStaticText*>(child)) {
                    texts.push_back(text->GetLabel().utf8_string());
                }
            }
            return texts;
        });
    }
};

const std::string saveQuestion = "question [T79] T78";

} // namespace

TEST_F(FrameTest, TitlePagesAndMenusComeFromTheLanguageFile)
{
    UseLetters();
    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetTitle(); }), "T49");
    EXPECT_EQ(OnGui([] { return Notebook().GetPageText(watchPage); }), "T1");
    EXPECT_EQ(OnGui([] { return Notebook().GetPageText(programPage); }), "T42");
    EXPECT_EQ(OnGui([] { return Notebook().GetSelection(); }), watchPage);
    EXPECT_EQ(OnGui([] { return Frame()->GetMenuBar()->GetMenuLabel(0); }), "T68");
    EXPECT_EQ(OnGui([] { return Frame()->GetMenuBar()->GetMenuLabel(1); }), "T69");
    EXPECT_EQ(
        OnGui([] { return MenuItems(0); }),
        (Words{
            "T50\tCtrl-N",
            "T53\tCtrl-O",
            "T56\tCtrl-W",
            "T59\tCtrl-S",
            "T62\tCtrl-A",
            "T102\tCtrl-Q"}));
    EXPECT_EQ(OnGui([] { return MenuItems(1); }), (Words{"T67\tCtrl-I"}));
}

TEST_F(FrameTest, HelpTextsComeFromTheLanguageFile)
{
    ASSERT_TRUE(Open());

    const auto help = [](int id) {
        return OnGui([id] { return Frame()->GetMenuBar()->GetHelpString(id).utf8_string(); });
    };
    EXPECT_EQ(help(wxID_NEW), "T52");
    EXPECT_EQ(help(wxID_OPEN), "T55");
    EXPECT_EQ(help(wxID_CLOSE), "T58");
    EXPECT_EQ(help(wxID_SAVE), "T61");
    EXPECT_EQ(help(wxID_SAVEAS), "T64");
    EXPECT_EQ(help(wxID_EXIT), "T104");
    EXPECT_EQ(help(wxID_HELP), "T67");
}

TEST_F(FrameTest, AMissingEmptyOrDottedLetterGivesNoAccelerator)
{
    WriteNumberedTexts(files.Path().string(), {{54, ""}}, {57});
    ASSERT_TRUE(Open());

    EXPECT_EQ(
        OnGui([] { return MenuItems(0); }), (Words{"T50", "T53", "T56", "T59", "T62", "T102"}));
    PressCtrl(XK_o);
    PressCtrl(XK_w);
    AwaitThreeTicks();
    EXPECT_EQ(OnGui([this] { return watch.InnermostInWords(); }), "");
}

TEST_F(FrameTest, AnItemWithoutALabelGetsNoLabelAndNoAcceleratorOfTheToolkit)
{
    WriteNumberedTexts(files.Path().string(), {{53, ""}, {59, ""}, {68, ""}, {69, ""}});
    ASSERT_TRUE(Open());

    PressCtrl(XK_o);
    PressCtrl(XK_s);
    AwaitThreeTicks();

    EXPECT_EQ(OnGui([this] { return watch.InnermostInWords(); }), "");
    EXPECT_EQ(OnGui([] { return Frame()->GetMenuBar()->GetMenuCount(); }), 2U);
    EXPECT_THAT(OnGui([] { return MenuItems(0)[1]; }), testing::Not(testing::HasSubstr("Open")));
}

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

TEST_F(FrameTest, WithoutAConfigurationTheWindowHasBuiltInTexts)
{
    std::filesystem::remove(files.File("plcdebug.ini"));

    ASSERT_TRUE(Open());

    EXPECT_NE(OnGui([] { return Frame()->GetTitle(); }), "");
    EXPECT_NE(OnGui([] { return Notebook().GetPageText(watchPage); }), "");
    CloseFrame();
    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(LastFileLine(), "");
}

TEST_F(FrameTest, ForAPrefixThatEndsInASlashTheConfigurationLiesOneFolderUp)
{
    std::filesystem::create_directory(files.File("c"));
    files.Write("c/_plcdbgi.dat", ProgramDebugFile({{"U E 0.0"}}));
    const std::string prefix = files.File("c") + "/";
    host.init.szPath[prefix.copy(host.init.szPath, PLC_PATH_SIZE)] = '\0';

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetTitle(); }), "T49");
}

TEST_F(FrameTest, APrefixWithoutASlashIsAFolderInTheCurrentOne)
{
    std::filesystem::create_directory(files.File("here"));
    std::filesystem::copy(files.File("plcdebug.ini"), files.File("here/plcdebug.ini"));
    files.Write("here_plcdbgi.dat", ProgramDebugFile({{"U E 0.0"}}));
    std::filesystem::current_path(files.Path());
    std::strcpy(host.init.szPath, "here");

    ASSERT_TRUE(Open());
    EXPECT_EQ(OnGui([] { return Frame()->GetTitle(); }), "T49");
    std::filesystem::current_path("/");
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

TEST_F(FrameTest, ATallFrameIsAtMost1942High)
{
    host.tallFrame = 7;

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetSize(); }), wxSize(600, 480));
    EXPECT_EQ(OnGui([] { return Frame()->GetMaxSize(); }), wxSize(-1, 1942));
}

TEST_F(FrameTest, ReadRequestsOfTheLastListPrecedeTheTallFrameCallback)
{
    UseList({"MW20/D"});
    int tallCallsAtRead = -1;
    host.reaction = [&](const RecordedRequest&) { tallCallsAtRead = host.tallFrameCalls; };

    ASSERT_TRUE(Open());

    OnGui([this] { host.reaction = nullptr; });
    EXPECT_EQ(tallCallsAtRead, 0);
}

TEST_F(FrameTest, TheInfoDialogShowsThreeLinesAndTheVersion)
{
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_HELP);

    ASSERT_TRUE(DialogOpens("dialog [T67]"));
    EXPECT_EQ(TextsInDialog(), (Words{"T45", "T46   01.14", "T48"}));
    EXPECT_TRUE(AnswerDialog("dialog [T67]", wxID_OK));
}

TEST_F(FrameTest, WithoutItsTextTheVersionLineKeepsItsBlanks)
{
    WriteNumberedTexts(files.Path().string(), {}, {46});
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_HELP);

    ASSERT_TRUE(DialogOpens("dialog [T67]"));
    EXPECT_EQ(TextsInDialog(), (Words{"T45", "   01.14", "T48"}));
    EXPECT_TRUE(AnswerDialog("dialog [T67]", wxID_OK));
}

TEST_F(FrameTest, TheCloseBoxEndsTheInfoDialog)
{
    ASSERT_TRUE(Open());
    ChooseMenu(wxID_HELP);
    ASSERT_TRUE(DialogOpens("dialog [T67]"));

    hands.CloseThroughManager(
        OnGui([this] { return TopLevelWindowOf(watch.Innermost()->GetHandle()); }));

    EXPECT_TRUE(Await("the dialog closed", [this] { return watch.Innermost() == nullptr; }));
    EXPECT_TRUE(OnGui([] { return Frame()->IsShown(); }));
}

TEST_F(FrameTest, SaveWithoutChangesDoesNothing)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    files.Write("list.plc", "untouched");

    ChooseMenu(wxID_SAVE);
    AwaitThreeTicks();

    EXPECT_EQ(files.Read("list.plc"), "untouched");
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

TEST_F(FrameTest, ACancelledSaveAsChangesNothing)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_SAVEAS);
    EXPECT_TRUE(AnswerDialog("file dialog [T80]", wxID_CANCEL));

    EXPECT_EQ(files.Read("list.plc"), "MW20/D\n");
    EXPECT_EQ(LastFileLine(), "PLCLastFile=" + files.File("list.plc"));
}

TEST_F(FrameTest, SaveWithoutAFileOpensSaveAs)
{
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("1.0");

    ChooseMenu(wxID_SAVE);
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    EXPECT_EQ(OfFileDialog(&wxFileDialog::GetWildcard), "T77 (*.plc)|*.plc");
    ASSERT_TRUE(ChooseFile(files.File("new.plc")));

    EXPECT_TRUE(Await("saved", [this] { return files.Read("new.plc") == "A1.0/B\n"; }));
}

TEST_F(FrameTest, NewKeepsTheFileNameForALaterSave)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    ChooseMenu(wxID_NEW);
    ASSERT_TRUE(Requests({"release 0"}));
    ASSERT_TRUE(Shows({}));
    DefineAndAwaitRequests("1.0");

    ChooseMenu(wxID_SAVE);

    EXPECT_TRUE(Await("saved", [this] { return files.Read("list.plc") == "A1.0/B\n"; }));
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

TEST_F(FrameTest, NewOffersToSaveAndYesSaves)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("22");

    ChooseMenu(wxID_NEW);
    EXPECT_TRUE(AnswerDialog(saveQuestion, wxID_YES));

    EXPECT_TRUE(Shows({}));
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\nMW22/D\n");
}

TEST_F(FrameTest, TheEscapeKeyMeansNoAndLeavesTheFileAlone)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("22");

    ChooseMenu(wxID_NEW);
    ASSERT_TRUE(DialogOpens(saveQuestion));
    hands.Press(XK_Escape);

    EXPECT_TRUE(Shows({}));
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\n");
}

TEST_F(FrameTest, OpenEmptiesTheListBeforeItsDialogAndACancelLeavesItEmpty)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(DialogOpens("file dialog [T76]"));
    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_TRUE(Shows({}));
    EXPECT_EQ(OfFileDialog(&wxFileDialog::GetWildcard), "T77 (*.plc)|*.plc");
    EXPECT_TRUE(AnswerDialog("file dialog [T76]", wxID_CANCEL));

    EXPECT_TRUE(SendsNothing());
    DefineAndAwaitRequests("1.0");
    ChooseMenu(wxID_SAVE);
    EXPECT_TRUE(
        Await("saved to the former file", [this] { return files.Read("list.plc") == "A1.0/B\n"; }));
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

TEST_F(FrameTest, FileDialogsOpenWhereTheLastFileLies)
{
    std::filesystem::create_directory(files.File("lists"));
    files.Write("lists/list.plc", "MW1/D\n");
    Configure("PLCLastFile", files.File("lists/list.plc"));
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(DialogOpens("file dialog [T76]"));
    EXPECT_EQ(OfFileDialog(&wxFileDialog::GetDirectory), files.File("lists"));
    EXPECT_TRUE(AnswerDialog("file dialog [T76]", wxID_CANCEL));
}

TEST_F(FrameTest, WithoutALastFileFileDialogsOpenBesideTheConfiguration)
{
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(DialogOpens("file dialog [T76]"));
    EXPECT_EQ(OfFileDialog(&wxFileDialog::GetDirectory), files.Path().string());
    EXPECT_TRUE(AnswerDialog("file dialog [T76]", wxID_CANCEL));
}

TEST_F(FrameTest, WithoutAFileNoLastFileIsRecorded)
{
    ASSERT_TRUE(Open());

    CloseFrame();
    EXPECT_TRUE(FrameGoes());

    EXPECT_EQ(LastFileLine(), "");
}

TEST_F(FrameTest, ASaveAsInTheQuestionOfTheExitIsRecordedAsTheLastFile)
{
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("1.0");
    CloseFrame();
    ASSERT_TRUE(AnswerDialog(saveQuestion, wxID_YES));
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(ChooseFile(files.File("late.plc")));

    EXPECT_TRUE(FrameGoes());
    EXPECT_EQ(files.Read("late.plc"), "A1.0/B\n");
    EXPECT_EQ(LastFileLine(), "PLCLastFile=" + files.File("late.plc"));
}

TEST_F(FrameTest, TheClosedWindowStaysHiddenUnderTheSaveQuestion)
{
    ASSERT_TRUE(Open());
    DefineAndAwaitRequests("1.0");
    TakeRequests();

    CloseFrame();

    ASSERT_TRUE(DialogOpens(saveQuestion));
    EXPECT_TRUE(Requests({"release 0"})) << "released before the question";
    AwaitThreeTicks();
    EXPECT_FALSE(OnGui([] { return Frame()->IsShown(); }));
    EXPECT_FALSE(OnGui([] { return gtk_widget_get_visible(Frame()->GetHandle()) != FALSE; }));
    EXPECT_TRUE(AnswerDialog(saveQuestion, wxID_NO));
    EXPECT_TRUE(FrameGoes());
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

TEST_F(FrameTest, AScrolledProgramPageAsksForTheRowsThatItThenShows)
{
    UseProgram({Words(100, "U E 0.0")});
    ASSERT_TRUE(Open());
    ASSERT_TRUE(ShowPage(programPage));
    ASSERT_TRUE(LastRequestHas("state 0.."));

    const wxRect list = OnGui([] { return GridOn(programPage).GetScreenRect(); });
    constexpr unsigned wheelDown = 5;
    constexpr int untilTheEnd = 100;
    hands.PressButton(list.x + list.width / 2, list.y + list.height / 2, wheelDown, untilTheEnd);

    EXPECT_TRUE(LastRequestHas("..99 "));
}

TEST_F(FrameTest, TheExitStopsTheProgramStateAfterTheReleases)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    ASSERT_TRUE(ShowPage(programPage));
    ASSERT_TRUE(Requests({"read 0 MW20", "start 0", "state 0..1 count 2"}));

    CloseFrame();

    EXPECT_TRUE(Requests({"release 0", "stop"}));
    EXPECT_TRUE(FrameGoes());
}

TEST_F(FrameTest, TheExitFromTheWatchPageSendsNoStop)
{
    ASSERT_TRUE(Open());
    ASSERT_TRUE(ShowPage(programPage));
    ASSERT_TRUE(ShowPage(watchPage));
    ASSERT_TRUE(Requests({"state 0..1 count 2", "stop"}));

    CloseFrame();

    EXPECT_TRUE(FrameGoes());
    EXPECT_TRUE(SendsNothing());
}

TEST_F(FrameTest, LanguageTextsWithWrongPlaceholdersAreShownSafely)
{
    WriteNumberedTexts(
        files.Path().string(), {{88, "100% sure %d"}, {89, "%n%s%d"}, {100, "%s"}, {106, "%d %d"}});
    UseList({"EB1/D"});
    ASSERT_TRUE(Open());

    Define("64");
    EXPECT_TRUE(AnswerDialog("message [T97] 100% sure %d 64", wxID_OK));
    EXPECT_TRUE(AnswerDialog("dialog [T9]", wxID_CANCEL));

    EnterValue(0, "x");
    EXPECT_TRUE(StatusReads("%n%s%d"));
    EnterValue(0, "128");
    EXPECT_TRUE(StatusReads("%s 127"));
    EnterValue(0, "-129");
    EXPECT_TRUE(StatusReads("%d %d -128"));
}

TEST_F(FrameTest, AGermanHostKeepsTheDecimalPoint)
{
    ASSERT_NE(OnGui([] { return std::setlocale(LC_ALL, "de_DE.UTF-8"); }), nullptr);
    UseList({"MD8/G"});
    ASSERT_TRUE(Open());
    TakeRequests();

    EnterValue(0, "1.5");
    EXPECT_TRUE(Requests({"write MD8=1069547520"}));
    Answer(0, 0x3FC00000);
    EXPECT_TRUE(Shows({"MD 8|1.500000|T33"}));
    EnterValue(0, "1,5");
    EXPECT_TRUE(StatusReads("T89"));
    EXPECT_TRUE(SendsNothing());
    OnGui([] { std::setlocale(LC_ALL, "C.UTF-8"); });
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
