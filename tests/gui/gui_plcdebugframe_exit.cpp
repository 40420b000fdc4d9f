#include "debugframe.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <wx/frame.h>

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

} // namespace

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

TEST_F(DebugFrame, IsDestroyedAlsoByACloseBoxInsideACallback)
{
    OpenOn(threeVars);
    host.reaction = [this](const RecordedRequest&) {
        host.reaction = nullptr;
        frame->Close();
        EXPECT_TRUE(frame);
    };

    notebook->SetSelection(1);

    EXPECT_TRUE(WaitFor("frame destroyed", [this] { return !frame; }));
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
    TypeValue(1, "77");

    frame->Close();
    EXPECT_TRUE(WaitFor("frame destroyed", [this] { return !frame; }));

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
}

TEST_F(DebugFrame, StopsTheProgramStateAfterTheReleases)
{
    OpenOn(threeVars);
    notebook->SetSelection(1);
    ASSERT_TRUE(WaitFor("subscribed", [this] { return !host.TakeInWords().empty(); }));

    Choose(wxID_EXIT);

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2", "stop"));
}

TEST_F(DebugFrame, StopsNoProgramStateFromAPageThatIsNoLongerShown)
{
    OpenOn(threeVars);
    notebook->SetSelection(1);
    ASSERT_TRUE(WaitFor("subscribed", [this] { return !host.TakeInWords().empty(); }));
    notebook->SetSelection(0);
    ASSERT_TRUE(WaitFor("stopped", [this] { return !host.TakeInWords().empty(); }));

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
