#include "debugfile.h"
#include "debugframe.h"
#include "descendants.h"
#include "plcprggrid.h"
#include "plcprggrid_table.h"
#include "plcprgpanel.h"
#include "records.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

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

        EXPECT_EQ(frame->GetSize(), wxSize(600, 480)) << tall;
        EXPECT_EQ(frame->GetMaxHeight(), height) << tall;
        EXPECT_EQ(frame->GetMaxWidth(), wxDefaultCoord) << tall;
        Destroy();
    }
    EXPECT_EQ(host.tallFrameCalls, 3);
}

TEST_F(DebugFrame, KeepsRoomForBothListsHoweverSmallItIsMade)
{
    Configure();
    Open();
    for (std::size_t page = 0; page < notebook->GetPageCount(); ++page) {
        notebook->SetSelection(page);
        frame->SetSize(600, 480);
        ASSERT_TRUE(WaitFor("large", [this] { return frame->GetSize() == wxSize(600, 480); }));
        RunPending();

        // As the edge of the window is dragged; where its room ends the toolkit complains.
        gtk_window_resize(GTK_WINDOW(frame->GetHandle()), 1, 1);

        ASSERT_TRUE(WaitFor("small", [this] { return frame->GetSize() == frame->GetMinSize(); }));
        RunPending();
        const auto* list = FirstOf<wxGrid>(*notebook->GetPage(page));
        EXPECT_GE(list->GetSize().GetWidth(), 64) << page;
        EXPECT_GE(list->GetSize().GetHeight(), 64) << page;
    }
}

TEST_F(DebugFrame, IsAsLargeAgainWhenADialogHasBeenShownAndLaterAsTheOperatorWantsIt)
{
    Configure();
    Open();
    dialogs.Dialog("T67", [](wxDialog& dialog) { Click(*dialog.FindWindow(wxID_OK)); });
    Choose(wxID_HELP);
    Destroy();

    Open();
    EXPECT_EQ(frame->GetSize(), wxSize(600, 480));

    frame->SetSize(700, 400);
    RunPending();
    EXPECT_TRUE(BecomesActive(*frame, wxSize(700, 400)));
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
    EXPECT_FALSE(notebook->GetPageText(0).empty());
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

// ---- The program page

TEST_F(DebugFrame, AsksForTheRowsOfAScrolledProgramPageAtATick)
{
    dir.Write("prog_plcdbgi.dat", DebugFile({{"OB 1", 0, ExecutableLines(100)}}));
    Configure();
    Open();
    notebook->SetSelection(1);
    ASSERT_TRUE(WaitFor("subscribed", [this] { return !host.requests.empty(); }));
    host.requests.clear();

    ASSERT_TRUE(Focus(*FirstOf<PlcPrgGrid>(*frame)->GetGridWindow()));
    PressKey(WXK_END, wxMOD_CONTROL);

    ASSERT_TRUE(WaitFor("request", [this] { return !host.requests.empty(); }));
    EXPECT_THAT(host.InWords(), ElementsAre(testing::HasSubstr("..99 ")));
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

TEST_F(DebugFrame, ShowsAnswersAlsoInAListThatWasTooLong)
{
    OpenOn(threeVars);
    std::string lines;
    for (int line = 0; line < MAX_WATCH_VARS + 2; ++line) {
        lines += "MB1/D\n";
    }
    dialogs.Message("T99", "T98 20");
    panel->LoadFile(dir.Write("long.plc", lines));

    Answer(3, 5);

    EXPECT_TRUE(WaitFor("answer", [this] { return Column(1)[0] == "5"; }));
    dialogs.Question("T79", "T78", wxID_NO);
    Destroy();
}

TEST_F(DebugFrame, ShowsTheLatestOfSeveralProgramStatesAtTheSameTick)
{
    Configure();
    Open();
    notebook->SetSelection(1);
    const auto* program = FirstOf<PlcPrgGrid>(*frame);
    for (const int value : {1, 2}) {
        const CMD_DATA answer = PrgStateAnswerRecord(0, 2, {{1, value}, {1, value}, {1, value}});
        frame->ProcessAnswerPrgState(reinterpret_cast<const unsigned char*>(&answer));
    }

    const auto shown = [program] { return program->GetCellValue(0, PrgColumnValue); };
    ASSERT_TRUE(WaitFor("a value", [&] { return shown() != "-"; }));
    EXPECT_EQ(shown(), "2");
}

TEST_F(DebugFrame, TakesAnAnswerAtAnyAlignmentAndOfAnyLength)
{
    OpenOn(threeVars);
    const CMD_DATA answer = PlcMakeReadAnswer(1, 7);
    std::vector<unsigned char> buffer(1 + sizeof answer);
    std::memcpy(buffer.data() + 1, &answer, sizeof answer);
    buffer[3] = 0xFF;
    buffer[4] = 0xFF;

    EXPECT_EQ(frame->ProcessAnswerReadVar(buffer.data() + 1), 1);
    std::fill(buffer.begin(), buffer.end(), 0); // the host may use its buffer again at once

    EXPECT_TRUE(WaitFor("answer", [this] { return Column(1)[1] == "7"; }));
}
