#include "debugframe.h"
#include "useractions.h"

#include <gmock/gmock.h>
#include <wx/filedlg.h>

#include <filesystem>
#include <optional>
#include <string>

namespace {

using testing::ElementsAre;

} // namespace

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

TEST_F(DebugFrame, TakesTheEscapeKeyForANo)
{
    OpenOn(threeVars);
    ChangeList();
    dialogs.OpenedQuestion("T79", "T78", [](wxDialog&) { PressKey(WXK_ESCAPE); });

    Choose(wxID_NEW);

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(dir.Read("last.plc"), threeVars);
    EXPECT_EQ(grid->GetNumberRows(), 0);
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

TEST_F(DebugFrame, OpensFileDialogsWhereItsLastFileLies)
{
    std::filesystem::create_directory(dir.Path() / "lists");
    Configure(dir.Write("lists/last.plc", threeVars));
    Open();
    dialogs.File("T76", std::nullopt, [this](wxFileDialog& dialog) {
        EXPECT_EQ(dialog.GetDirectory(), dir.File("lists"));
    });

    Choose(wxID_OPEN);

    EXPECT_TRUE(dialogs.AllShown());
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
