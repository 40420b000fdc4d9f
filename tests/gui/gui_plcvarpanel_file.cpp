#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VarPanelFile : public WatchPage
{
protected:
    bool LoadText(const std::string& text) { return panel->LoadFile(dir.Write("a.plc", text)); }

    /// Defines one variable like the first of the list, so that the list differs from its file.
    void DefineOne(const char* defined)
    {
        Select({});
        ExpectAddress("T9", defined);
        const int rows = grid->GetNumberRows();
        ClickAndWait(*define, [this, rows] { return grid->GetNumberRows() == rows + 1; });
        host.requests.clear();
    }
};

std::string Lines(int count)
{
    std::string text;
    for (int line = 0; line < count; ++line) {
        text += "MB" + std::to_string(line) + "/D\n";
    }
    return text;
}

} // namespace

TEST_F(VarPanelFile, ShowsEveryVariableWithAQuestionMark)
{
    ASSERT_TRUE(LoadText("M 10.3 /B\nEW4/H\nDB20.DBX3.1/B\nDB10.DBD12/G\nT5/D\n"));

    EXPECT_THAT(Column(0), ElementsAre("M 10.3", "EW 4", "DB20.DBX 3.1", "DB10.DBD 12", "T 5"));
    EXPECT_THAT(Column(1), ElementsAre("?", "?", "?", "?", "?"));
    EXPECT_THAT(Column(2), ElementsAre("T32", "T31", "T32", "T33", "T30"));
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, RegistersInFileOrderAndReleasesTheOldListFirst)
{
    ASSERT_TRUE(LoadText("MB1/D\nMB2/D\n"));
    EXPECT_THAT(host.TakeInWords(), ElementsAre("read 0 MB1", "start 0", "read 1 MB2", "start 1"));

    ASSERT_TRUE(LoadText("EW4/H\nT5/D\n"));

    EXPECT_THAT(
        host.InWords(),
        ElementsAre("release 0", "release 1", "read 2 EW4", "start 2", "read 3 T5", "start 3"));
}

TEST_F(VarPanelFile, SkipsLinesThatAreNoneInSilence)
{
    ASSERT_TRUE(LoadText("m10.3/b\nM10.3/B;x\nxM10.3/B\nDB5.DBW2/H\nT5\n\nhello\nMB7/D\n"));

    EXPECT_THAT(Column(0), ElementsAre("MB 7"));
    EXPECT_THAT(host.InWords(), ElementsAre("read 0 MB7", "start 0"));
}

TEST_F(VarPanelFile, OfUnknownLinesIsAnEmptyList)
{
    ASSERT_TRUE(LoadText("MB1/D\n"));
    host.requests.clear();

    EXPECT_TRUE(LoadText("hello\nworld\n"));

    EXPECT_EQ(grid->GetNumberRows(), 0);
    EXPECT_THAT(host.InWords(), ElementsAre("release 0"));
}

TEST_F(VarPanelFile, NamesTheFaultOfARefusedAddressAndGoesOn)
{
    dialogs.Message("T97", "T88 512");
    dialogs.Message("T97", "T86");

    ASSERT_TRUE(LoadText("MB512/D\nM5/B\nMB7/D\n"));

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_THAT(Column(0), ElementsAre("MB 7"));
    EXPECT_THAT(host.InWords(), ElementsAre("read 0 MB7", "start 0"));
}

TEST_F(VarPanelFile, ChecksTheAddressOfALineThatIsInvalidAnyway)
{
    dialogs.Message("T97", "T88 512");

    ASSERT_TRUE(LoadText("MB600/D;x\n"));

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(grid->GetNumberRows(), 0);
}

TEST_F(VarPanelFile, Brings21Variables)
{
    ASSERT_TRUE(LoadText(Lines(21)));

    EXPECT_EQ(grid->GetNumberRows(), 21);
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, StopsAtThe22ndWithAMessageAndCountsAsModified)
{
    dialogs.Message("T99", "T98 20");

    ASSERT_TRUE(LoadText(Lines(25)));

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(grid->GetNumberRows(), 21);
    EXPECT_EQ(host.requests.size(), 42U);
    EXPECT_TRUE(panel->IsModified());
}

TEST_F(VarPanelFile, CountsOnlyValidLines)
{
    ASSERT_TRUE(LoadText(Lines(21) + "hello\nM1.9/B\n"));

    EXPECT_EQ(grid->GetNumberRows(), 21);
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, ChangesNothingWhenItCannotBeOpened)
{
    ASSERT_TRUE(LoadText("MB1/D\n"));
    DefineOne("5");
    const wxString missing = dir.File("missing.plc");
    dialogs.Message("T99", "T92 " + missing);

    EXPECT_FALSE(panel->LoadFile(missing));

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(grid->GetNumberRows(), 2);
    EXPECT_TRUE(panel->IsModified());
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarPanelFile, IsNotModifiedOnceLoaded)
{
    DefineOne("1.1");
    ASSERT_TRUE(panel->IsModified());

    ASSERT_TRUE(LoadText("MB1/D\n"));

    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, TellsThatItIsLoadingWhileTheHostIsAsked)
{
    std::vector<bool> loading;
    host.reaction = [&](const RecordedRequest&) { loading.push_back(panel->IsLoading()); };

    ASSERT_TRUE(LoadText("MB1/D\n"));

    EXPECT_THAT(loading, ElementsAre(true, true));
    EXPECT_FALSE(panel->IsLoading());
}

TEST_F(VarPanelFile, ThrowsATypedValueAway)
{
    Load({"MB1/D"});
    OpenEditor(0);
    Type("77");
    ASSERT_TRUE(WaitFor("typed", [this] { return EditorText() == "77"; }));

    ASSERT_TRUE(LoadText("MB2/D\n"));
    RunPending();

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "read 1 MB2", "start 1"));
    EXPECT_THAT(Column(0), ElementsAre("MB 2"));
}

TEST_F(VarPanelFile, SelectsWholeRowsFromTheFirstLoadOn)
{
    EXPECT_EQ(grid->GetSelectionMode(), wxGrid::wxGridSelectCells);

    ASSERT_TRUE(LoadText("MB1/D\n"));

    EXPECT_EQ(grid->GetSelectionMode(), wxGrid::wxGridSelectRows);
}

// ---- Saving

TEST_F(VarPanelFile, IsSavedAsItWasLoaded)
{
    const std::string text = "M10.3/B\nEW4/H\nT5/D\nDB10.DBW12/D\nDB20.DBX3.1/B\nMD8/G\n";
    ASSERT_TRUE(LoadText(text));

    panel->SaveFile(dir.File("b.plc"));

    EXPECT_EQ(dir.Read("b.plc"), text);
}

TEST_F(VarPanelFile, LosesItsModificationMarkWhenSaved)
{
    DefineOne("1.1");

    panel->SaveFile(dir.File("b.plc"));

    EXPECT_EQ(dir.Read("b.plc"), "A1.1/B\n");
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, LosesItsModificationMarkAlsoWhenItCannotBeWritten)
{
    DefineOne("1.1");

    panel->SaveFile(dir.File("missing/b.plc"));
    RunPending();

    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelFile, OfAnEmptyListIsEmpty)
{
    dir.Write("b.plc", "old\n");

    panel->SaveFile(dir.File("b.plc"));

    EXPECT_EQ(dir.Read("b.plc"), "");
    EXPECT_FALSE(panel->IsModified());
}
