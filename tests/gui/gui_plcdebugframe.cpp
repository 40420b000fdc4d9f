#include "debugfile.h"
#include "expecteddialogs.h"
#include "guitexts.h"
#include "numberedtexts.h"
#include "plcdebugframe.h"
#include "plcnotebook.h"
#include "plcprgpanel.h"
#include "plcvargrid.h"
#include "plcvarpanel.h"
#include "recordinghost.h"
#include "tempdir.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <wx/filedlg.h>
#include <wx/weakref.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Looks for a window of a class below another one.
template <typename Window> Window* FindBelow(const wxWindow& parent)
{
    for (wxWindow* child : parent.GetChildren()) {
        if (auto* found = dynamic_cast<Window*>(child)) {
            return found;
        }
        if (auto* found = FindBelow<Window>(*child)) {
            return found;
        }
    }
    return nullptr;
}

/// The debugger's frame, opened on a directory of its own: configuration, texts, debug file.
class DebugFrame : public testing::Test
{
protected:
    DebugFrame() : host(dir.File("prog"))
    {
        WriteNumberedTexts(dir.Path());
        dir.Write("prog_plcdbgi.dat", DebugFile({{"OB 1", 0, ExecutableLines(3)}}));
    }

    ~DebugFrame() override
    {
        if (frame) {
            delete frame.get();
        }
    }

    /// Writes the configuration with the language and, if there is one, the last list file.
    void Configure(const std::string& lastFile = "") const
    {
        dir.Write(
            "plcdebug.ini",
            "[Settings]\nLanguagePath=" + dir.Path().string() + "\nLanguage=" + numberedLanguage +
                "\n" + (lastFile.empty() ? "" : "PLCLastFile=" + lastFile + "\n"));
    }

    void Open()
    {
        frame = new PlcDebugFrame(nullptr, host.init);
        panel = FindBelow<PlcVarPanel>(*frame);
        grid = FindBelow<PlcVarGrid>(*frame);
        notebook = FindBelow<PlcNoteBook>(*frame);
        ASSERT_TRUE(panel != nullptr && grid != nullptr && notebook != nullptr);
        ASSERT_TRUE(ShowActive(*frame));
        RunPending();
    }

    /// Opens on a list file with these lines.
    void OpenOn(const std::string& lines)
    {
        Configure(dir.Write("last.plc", lines));
        Open();
        host.requests.clear();
    }

    void Choose(int menuItem)
    {
        frame->ProcessCommand(menuItem);
        RunPending();
    }

    /// Changes the list, by deleting its first row.
    void ChangeList()
    {
        grid->SelectBlock(0, 0, 0, varColumnCount - 1);
        wxCommandEvent remove;
        panel->OnButtonDelete(remove);
        ASSERT_TRUE(panel->IsModified());
        host.requests.clear();
    }

    void Answer(std::uint16_t key, std::int32_t value)
    {
        const CMD_DATA answer = ReadAnswer(key, value);
        EXPECT_EQ(frame->ProcessAnswerReadVar(reinterpret_cast<const unsigned char*>(&answer)), 1);
    }

    std::vector<std::string> Column(int column) const
    {
        std::vector<std::string> cells;
        for (int row = 0; row < grid->GetNumberRows(); ++row) {
            cells.push_back(grid->GetCellValue(row, column).ToStdString());
        }
        return cells;
    }

    std::string LastFileInConfiguration() const
    {
        const std::string key = "PLCLastFile=";
        std::ifstream file(dir.File("plcdebug.ini"));
        for (std::string line; std::getline(file, line);) {
            if (line.rfind(key, 0) == 0) {
                return line.substr(key.size());
            }
        }
        return "";
    }

    void Destroy()
    {
        delete frame.get();
        panel = nullptr;
    }

    TempDir dir;
    RecordingHost host;
    ExpectedDialogs dialogs;
    wxWeakRef<PlcDebugFrame> frame;
    PlcVarPanel* panel = nullptr;
    PlcVarGrid* grid = nullptr;
    PlcNoteBook* notebook = nullptr;
};

const char* const threeVars = "MB1/D\nMB2/D\nMB3/D\n";

} // namespace

// ---- What it opens with

TEST_F(DebugFrame, HasTitleStatusLineAndTwoPages)
{
    Configure();
    Open();

    EXPECT_EQ(frame->GetTitle(), "T49");
    EXPECT_EQ(frame->GetStatusBar()->GetFieldsCount(), 1);
    ASSERT_EQ(notebook->GetPageCount(), 2U);
    EXPECT_EQ(notebook->GetPageText(0), "T1");
    EXPECT_EQ(notebook->GetPageText(1), "T42");
    EXPECT_EQ(notebook->GetSelection(), 0);
    EXPECT_NE(dynamic_cast<PlcVarPanel*>(notebook->GetPage(0)), nullptr);
    EXPECT_NE(dynamic_cast<PlcPrgPanel*>(notebook->GetPage(1)), nullptr);
}

TEST_F(DebugFrame, IsAsLargeAsItIsToBe)
{
    for (const auto& [tall, height] :
         {std::pair(0, 514), std::pair(1, 1942), std::pair(-1, 1942)}) {
        host.tallFrame = tall;
        Configure();
        Open();

        EXPECT_TRUE(
            WaitFor("size 600 x 480", [this] { return frame->GetSize() == wxSize(600, 480); }))
            << frame->GetSize().x << " x " << frame->GetSize().y;
        EXPECT_EQ(frame->GetMaxHeight(), height) << tall;
        EXPECT_EQ(frame->GetMaxWidth(), wxDefaultCoord) << tall;
        Destroy();
    }
    EXPECT_EQ(host.tallFrameCalls, 3);
}

TEST_F(DebugFrame, MayBeLowWhenTheHostDoesNotSay)
{
    host.init.pfnTallFrame = nullptr;
    Configure();
    Open();

    EXPECT_EQ(frame->GetMaxHeight(), 514);
}

TEST_F(DebugFrame, LoadsTheLastFileBeforeTheHostIsAskedForItsHeight)
{
    std::vector<int> tallFrameCallsBefore;
    host.reaction = [&](const RecordedRequest&) {
        tallFrameCallsBefore.push_back(host.tallFrameCalls);
    };
    Configure(dir.Write("last.plc", "MB1/D\n"));
    Open();

    EXPECT_THAT(host.InWords(), ElementsAre("read 0 MB1", "start 0"));
    EXPECT_THAT(tallFrameCallsBefore, ElementsAre(0, 0));
    EXPECT_THAT(Column(0), ElementsAre("MB 1"));
}

TEST_F(DebugFrame, ReadsItsConfigurationBesideAPrefixThatEndsInASlash)
{
    const std::string prefix = dir.File("c") + "/";
    std::filesystem::create_directory(prefix);
    dir.Write("c/_plcdbgi.dat", dir.Read("prog_plcdbgi.dat"));
    prefix.copy(host.init.szPath, sizeof host.init.szPath - 1);
    host.init.szPath[prefix.size()] = '\0';
    Configure();
    Open();

    EXPECT_EQ(frame->GetTitle(), "T49");
}

TEST_F(DebugFrame, ReadsItsConfigurationInADirectoryNamedLikeAPrefixWithoutSlash)
{
    std::filesystem::create_directory(dir.Path() / "prog");
    Configure();
    std::filesystem::rename(dir.Path() / "plcdebug.ini", dir.Path() / "prog" / "plcdebug.ini");
    std::filesystem::current_path(dir.Path());
    std::string("prog").copy(host.init.szPath, 5);
    host.init.szPath[4] = '\0';
    Open();

    EXPECT_EQ(frame->GetTitle(), "T49");
    std::filesystem::current_path("/");
}

TEST_F(DebugFrame, OpensWithoutAConfiguration)
{
    Open();

    EXPECT_EQ(grid->GetNumberRows(), 0);
    EXPECT_FALSE(frame->GetTitle().empty()); // the built-in English texts
}

TEST_F(DebugFrame, SaysThatItsLastFileIsMissingAndGoesOn)
{
    const std::string missing = dir.File("missing.plc");
    dialogs.Message("T99", "T92 " + missing);
    Configure(missing);
    Open();

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(grid->GetNumberRows(), 0);
}

// ---- The menu

TEST_F(DebugFrame, HasTheMenusOfItsTexts)
{
    Configure();
    Open();

    const wxMenuBar& bar = *frame->GetMenuBar();
    ASSERT_EQ(bar.GetMenuCount(), 2U);
    EXPECT_EQ(bar.GetMenuLabel(0), "T68");
    EXPECT_EQ(bar.GetMenuLabel(1), "T69");
    std::vector<std::string> items;
    for (std::size_t menu = 0; menu < 2; ++menu) {
        for (const wxMenuItem* item : bar.GetMenu(menu)->GetMenuItems()) {
            items.push_back(
                std::to_string(item->GetId()) + " " + item->GetItemLabel().ToStdString() + " " +
                item->GetHelp().ToStdString());
        }
    }
    EXPECT_THAT(
        items,
        ElementsAre(
            "5002 T50 T52",
            "5000 T53 T55",
            "5001 T56 T58",
            "5003 T59 T61",
            "5004 T62 T64",
            "5006 T102 T104",
            "5009 T67 T67"));
}

TEST_F(DebugFrame, GivesAcceleratorsToItemsWithALetter)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}, {54, "..."}, {57, ""}, {60, "s"}, {66, "I"}}, {63});
    Configure();
    Open();

    const auto key = [this](int item) {
        const std::unique_ptr<wxAcceleratorEntry> entry(
            frame->GetMenuBar()->FindItem(item)->GetAccel());
        return entry ? entry->GetKeyCode() : 0;
    };
    EXPECT_EQ(key(wxID_NEW), 'N');
    EXPECT_EQ(key(wxID_OPEN), 0);
    EXPECT_EQ(key(wxID_CLOSE), 0);
    EXPECT_EQ(key(wxID_SAVE), 'S');
    EXPECT_EQ(key(wxID_SAVEAS), 0);
    EXPECT_EQ(key(wxID_HELP), 'I');
}

TEST_F(DebugFrame, ObeysItsAccelerators)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}});
    OpenOn(threeVars);

    PressKey('N', wxMOD_CONTROL);

    EXPECT_TRUE(WaitFor("empty list", [this] { return grid->GetNumberRows() == 0; }));
}

TEST_F(DebugFrame, ThrowsATypedValueAwayWhenANewListIsBegunByItsAccelerator)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}});
    OpenOn(threeVars);
    grid->SetFocus();
    grid->SetGridCursor(1, varColumnValue);
    PressKey(WXK_F2);
    ASSERT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    Type("77");

    PressKey('N', wxMOD_CONTROL);

    ASSERT_TRUE(WaitFor("empty list", [this] { return grid->GetNumberRows() == 0; }));
    RunPending();
    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
}

TEST_F(DebugFrame, OpensWithEmptyTextsAndTakesNoneOfTheToolkitsOwn)
{
    std::set<int> all;
    for (int entry = 1; entry <= 109; ++entry) {
        all.insert(entry);
    }
    WriteNumberedTexts(dir.Path(), {}, all);
    dir.Write("numbered.lng", "[48]\n200=x\n");
    Configure();
    Open();

    EXPECT_EQ(frame->GetTitle(), "");
    ASSERT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
    for (const int id : {wxID_NEW, wxID_OPEN, wxID_CLOSE, wxID_SAVE, wxID_SAVEAS, wxID_EXIT}) {
        const wxMenuItem* item = frame->GetMenuBar()->FindItem(id);
        EXPECT_EQ(item->GetItemLabelText(), " ");
        const std::unique_ptr<wxAcceleratorEntry> accelerator(item->GetAccel());
        EXPECT_EQ(accelerator, nullptr);
    }
}

TEST_F(DebugFrame, ShowsTheInfoDialog)
{
    Configure();
    Open();
    dialogs.Dialog("T67", [](wxDialog& dialog) { Click(*dialog.FindWindow(wxID_OK)); });

    Choose(wxID_HELP);

    EXPECT_TRUE(dialogs.AllShown());
}

// ---- New and Close

TEST_F(DebugFrame, EmptiesTheListForNewAndClose)
{
    for (const int item : {wxID_NEW, wxID_CLOSE}) {
        OpenOn(threeVars);

        Choose(item);

        EXPECT_EQ(grid->GetNumberRows(), 0);
        EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
        Destroy();
    }
}

TEST_F(DebugFrame, SavesANewListToTheFileThatWasCurrentBefore)
{
    OpenOn(threeVars);
    Choose(wxID_NEW);
    panel->LoadFile(dir.Write("other.plc", "MB7/D\nMB8/D\n"));
    ChangeList();

    Choose(wxID_SAVE);

    EXPECT_EQ(dir.Read("last.plc"), "MB8/D\n");
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(DebugFrame, AsksWhetherToSaveBeforeNew)
{
    struct Case
    {
        int answer;
        const char* saved;
    };

    for (const Case& given :
         {Case{wxID_YES, "MB2/D\nMB3/D\n"},
          Case{wxID_NO, threeVars},
          Case{wxID_CANCEL, threeVars}}) {
        OpenOn(threeVars);
        ChangeList();
        dialogs.Question("T79", "T78", given.answer);

        Choose(wxID_NEW);

        EXPECT_TRUE(dialogs.AllShown());
        EXPECT_EQ(dir.Read("last.plc"), given.saved);
        EXPECT_EQ(grid->GetNumberRows(), 0);
        EXPECT_FALSE(panel->IsModified());
        Destroy();
    }
}

TEST_F(DebugFrame, AsksNothingWhenNothingHasChanged)
{
    OpenOn(threeVars);

    Choose(wxID_NEW);

    EXPECT_EQ(dir.Read("last.plc"), threeVars);
}

TEST_F(DebugFrame, GoesOnWithNewWhenTheSaveAsDialogBehindAYesIsCancelled)
{
    Configure();
    Open();
    panel->LoadFile(dir.Write("other.plc", threeVars));
    ChangeList();
    dialogs.Question("T79", "T78", wxID_YES);
    dialogs.File("T80", std::nullopt);

    Choose(wxID_NEW);

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(grid->GetNumberRows(), 0);
}

// ---- Open

TEST_F(DebugFrame, EmptiesTheListBeforeTheOpenDialogAndLoadsWhatIsChosen)
{
    OpenOn(threeVars);
    const std::string other = dir.Write("other.plc", "EW4/H\n");
    int rowsUnderTheDialog = -1;
    dialogs.File("T76", wxString(other), [&](wxFileDialog& dialog) {
        rowsUnderTheDialog = grid->GetNumberRows();
        EXPECT_EQ(dialog.GetDirectory(), dir.Path().string());
        EXPECT_EQ(dialog.GetWildcard(), "T77 (*.plc)|*.plc");
        EXPECT_TRUE(dialog.HasFlag(wxFD_OPEN));
    });

    Choose(wxID_OPEN);

    EXPECT_EQ(rowsUnderTheDialog, 0);
    EXPECT_THAT(Column(0), ElementsAre("EW 4"));
    EXPECT_THAT(
        host.InWords(),
        ElementsAre("release 0", "release 1", "release 2", "read 3 EW4", "start 3"));
}

TEST_F(DebugFrame, KeepsTheListEmptyAndItsFileNameWhenOpenIsCancelled)
{
    OpenOn(threeVars);
    dialogs.File("T76", std::nullopt);

    Choose(wxID_OPEN);

    EXPECT_EQ(grid->GetNumberRows(), 0);
    panel->LoadFile(dir.Write("other.plc", "MB7/D\nMB8/D\n"));
    ChangeList();
    Choose(wxID_SAVE);
    EXPECT_EQ(dir.Read("last.plc"), "MB8/D\n");
}

TEST_F(DebugFrame, OpensEveryFileDialogInTheSameDirectory)
{
    OpenOn(threeVars);
    std::filesystem::create_directory(dir.Path() / "elsewhere");
    const std::string other = dir.Write("elsewhere/other.plc", "EW4/H\n");
    dialogs.File("T76", wxString(other));
    Choose(wxID_OPEN);

    dialogs.File("T80", std::nullopt, [this](wxFileDialog& dialog) {
        EXPECT_EQ(dialog.GetDirectory(), dir.Path().string());
    });
    Choose(wxID_SAVEAS);

    EXPECT_TRUE(dialogs.AllShown());
}

// ---- Save and Save as

TEST_F(DebugFrame, SavesNothingWhenNothingHasChanged)
{
    OpenOn(threeVars);
    dir.Write("last.plc", "changed by somebody else\n");

    Choose(wxID_SAVE);

    EXPECT_EQ(dir.Read("last.plc"), "changed by somebody else\n");
}

TEST_F(DebugFrame, DoesNothingForSaveWithoutChangesAndWithoutAFile)
{
    Configure();
    Open();

    Choose(wxID_SAVE);

    EXPECT_TRUE(dialogs.AllShown());
}

TEST_F(DebugFrame, SavesToItsFile)
{
    OpenOn(threeVars);
    ChangeList();

    Choose(wxID_SAVE);

    EXPECT_EQ(dir.Read("last.plc"), "MB2/D\nMB3/D\n");
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(DebugFrame, AsksForANameWhenThereIsNoFileYet)
{
    Configure();
    Open();
    panel->LoadFile(dir.Write("other.plc", threeVars));
    ChangeList();
    dialogs.File("T80", wxString(dir.File("fresh.plc")), [this](wxFileDialog& dialog) {
        EXPECT_EQ(dialog.GetDirectory(), dir.Path().string());
        EXPECT_EQ(dialog.GetWildcard(), "T77 (*.plc)|*.plc");
        EXPECT_TRUE(dialog.HasFlag(wxFD_SAVE));
        EXPECT_TRUE(dialog.HasFlag(wxFD_OVERWRITE_PROMPT));
    });

    Choose(wxID_SAVE);

    EXPECT_EQ(dir.Read("fresh.plc"), "MB2/D\nMB3/D\n");
    Destroy();
    EXPECT_EQ(LastFileInConfiguration(), dir.File("fresh.plc"));
}

TEST_F(DebugFrame, SavesAsAlsoWhenNothingHasChanged)
{
    OpenOn(threeVars);
    dialogs.File("T80", wxString(dir.File("copy.plc")));

    Choose(wxID_SAVEAS);

    EXPECT_EQ(dir.Read("copy.plc"), threeVars);
    ChangeList();
    Choose(wxID_SAVE);
    EXPECT_EQ(dir.Read("copy.plc"), "MB2/D\nMB3/D\n");
    EXPECT_EQ(dir.Read("last.plc"), threeVars);
}

TEST_F(DebugFrame, ChangesNothingWhenSaveAsIsCancelled)
{
    OpenOn(threeVars);
    ChangeList();
    dialogs.File("T80", std::nullopt);

    Choose(wxID_SAVEAS);

    EXPECT_TRUE(panel->IsModified());
    Choose(wxID_SAVE);
    EXPECT_EQ(dir.Read("last.plc"), "MB2/D\nMB3/D\n");
}

// ---- Exit

TEST_F(DebugFrame, HidesReleasesAndNotesItsFileByExitOnce)
{
    OpenOn(threeVars);

    Choose(wxID_EXIT);

    ASSERT_TRUE(frame);
    EXPECT_FALSE(frame->IsShown());
    EXPECT_THAT(host.TakeInWords(), ElementsAre("release 0", "release 1", "release 2"));
    EXPECT_EQ(LastFileInConfiguration(), dir.File("last.plc"));
    std::filesystem::remove(dir.File("plcdebug.ini"));

    Choose(wxID_EXIT);
    Destroy();

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_EQ(LastFileInConfiguration(), "");
}

TEST_F(DebugFrame, KeepsItsExitFromTheFrameOfAWxWidgetsHost)
{
    wxFrame hostFrame(nullptr, wxID_ANY, "host");
    bool hostExits = false;
    hostFrame.Bind(
        wxEVT_MENU, [&hostExits](wxCommandEvent&) { hostExits = true; }, wxID_EXIT);
    Configure();
    frame = new PlcDebugFrame(&hostFrame, host.init);

    Choose(wxID_EXIT);

    EXPECT_FALSE(frame->IsShown());
    EXPECT_FALSE(hostExits);
    Destroy();
}

TEST_F(DebugFrame, IsDestroyedByItsCloseBoxHavingExitedOnce)
{
    OpenOn(threeVars);

    frame->Close();
    EXPECT_TRUE(WaitFor("frame destroyed", [this] { return !frame; }));

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
    EXPECT_EQ(LastFileInConfiguration(), dir.File("last.plc"));
}

TEST_F(DebugFrame, ExitsAlsoWhenItIsJustDeleted)
{
    OpenOn(threeVars);

    Destroy();

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
    EXPECT_EQ(LastFileInConfiguration(), dir.File("last.plc"));
}

TEST_F(DebugFrame, NotesNoFileWhenThereIsNone)
{
    Configure();
    const std::string before = dir.Read("plcdebug.ini");
    Open();

    Destroy();

    EXPECT_EQ(dir.Read("plcdebug.ini"), before);
}

TEST_F(DebugFrame, AsksWhetherToSaveWhileHiddenAndStaysHidden)
{
    OpenOn(threeVars);
    ChangeList();
    bool shownUnderTheQuestion = true;
    dialogs.OpenedQuestion("T79", "T78", [&](wxDialog&) {
        shownUnderTheQuestion = frame->IsShown();
        PressKey(WXK_RETURN);
    });

    Choose(wxID_EXIT);
    RunPending();

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_FALSE(shownUnderTheQuestion);
    EXPECT_FALSE(frame->IsShown());
    EXPECT_EQ(dir.Read("last.plc"), "MB2/D\nMB3/D\n");
}

TEST_F(DebugFrame, NotesTheFileOfASaveAsThatTheExitQuestionLedTo)
{
    Configure();
    Open();
    panel->LoadFile(dir.Write("other.plc", threeVars));
    ChangeList();
    dialogs.Question("T79", "T78", wxID_YES);
    dialogs.File("T80", wxString(dir.File("fresh.plc")));

    Choose(wxID_EXIT);

    EXPECT_EQ(dir.Read("fresh.plc"), "MB2/D\nMB3/D\n");
    EXPECT_EQ(LastFileInConfiguration(), dir.File("fresh.plc"));
}

TEST_F(DebugFrame, SendsNoTypedValueWhenItIsClosed)
{
    OpenOn(threeVars);
    grid->SetFocus();
    grid->SetGridCursor(1, varColumnValue);
    PressKey(WXK_F2);
    ASSERT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    Type("77");

    frame->Close();
    EXPECT_TRUE(WaitFor("frame destroyed", [this] { return !frame; }));

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
}

TEST_F(DebugFrame, StopsNoProgramStateFromAPageThatIsNotShown)
{
    OpenOn(threeVars);
    ASSERT_FALSE(notebook->GetPage(1)->IsShown());

    Choose(wxID_EXIT);

    EXPECT_THAT(host.InWords(), testing::Not(testing::Contains("stop")));
    EXPECT_THAT(host.requests, SizeIs(3));
}

TEST_F(DebugFrame, LeavesAnswersInTheQueueAfterExit)
{
    OpenOn(threeVars);
    Choose(wxID_EXIT);

    Answer(0, 5);
    WaitThreeTicks();

    EXPECT_EQ(grid->GetCellValue(0, varColumnValue), "?");
}

// ---- The drain

TEST_F(DebugFrame, DeliversTheNewestAnswerOfEachVariable)
{
    OpenOn(threeVars);

    Answer(0, 1);
    Answer(1, 2);
    Answer(0, 3);

    ASSERT_TRUE(WaitFor("answers", [this] { return Column(1)[1] == "2"; }));
    EXPECT_THAT(Column(1), ElementsAre("3", "2", "?"));

    Answer(0, 4);
    EXPECT_TRUE(WaitFor("next tick", [this] { return Column(1)[0] == "4"; }));
}

TEST_F(DebugFrame, KeepsAnswersBackWhileAFileIsBeingLoaded)
{
    OpenOn(threeVars);
    host.reaction = [this](const RecordedRequest& request) {
        if (request.callback == RecordedRequest::Callback::Read) {
            Answer(request.record.key, 5);
            WaitThreeTicks(); // a host that runs a loop inside its callback
        }
    };

    panel->LoadFile(dir.Write("other.plc", "MB7/D\nMB8/D\n"));

    EXPECT_THAT(Column(1), ElementsAre("?", "?"));
    EXPECT_TRUE(WaitFor("answers", [this] {
        return Column(1) == std::vector<std::string>{"5", "5"};
    }));
}

TEST_F(DebugFrame, TakesAnAnswerAtAnyAlignmentAndOfAnyLength)
{
    OpenOn(threeVars);
    const CMD_DATA answer = ReadAnswer(1, 7);
    std::vector<unsigned char> buffer(1 + sizeof answer);
    std::memcpy(buffer.data() + 1, &answer, sizeof answer);
    buffer[3] = 0xFF;
    buffer[4] = 0xFF;

    EXPECT_EQ(frame->ProcessAnswerReadVar(buffer.data() + 1), 1);
    std::fill(buffer.begin(), buffer.end(), 0); // the host may use its buffer again at once

    EXPECT_TRUE(WaitFor("answer", [this] { return Column(1)[1] == "7"; }));
}
