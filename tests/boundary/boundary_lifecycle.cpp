#include "debuggertest.h"
#include "environment.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <wx/app.h>

#include <X11/keysym.h>
#include <clocale>
#include <cstdio>
#include <malloc.h>
#include <stdexcept>

using testing::IsEmpty;

namespace {

class LifeCycle : public DebuggerTest
{
protected:
    bool ToolkitRuns()
    {
        return OnGui([] { return wxTheApp != nullptr; });
    }

    /// @return bytes. What the toolkits put off until the loop is idle has been done by then.
    std::size_t HeapInUse()
    {
        AwaitThreeTicks();
        const struct mallinfo2 heap = mallinfo2();
        return heap.uordblks + heap.hblkhd;
    }

    bool FrameIsShown()
    {
        return OnGui([] { return Frame() != nullptr && Frame()->IsShown(); });
    }
};

} // namespace

TEST_F(LifeCycle, AnswersBeforeCreateAreDropped)
{
    EXPECT_EQ(Answer(0, 1), 0);
}

TEST_F(LifeCycle, DestroyBeforeCreateIsHarmless)
{
    Destroy();

    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
    EXPECT_TRUE(Open());
}

TEST_F(LifeCycle, CreateOpensTheWindowAndAnswersAreTaken)
{
    ASSERT_TRUE(Open());

    EXPECT_TRUE(FrameIsShown());
    EXPECT_EQ(Answer(0, 1), 1);
}

TEST_F(LifeCycle, AHostInWhichAComplaintIsFatalCanOpenTheWindow)
{
    constexpr auto fatal = static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL);
    const GLogLevelFlags before = OnGui([] { return g_log_set_always_fatal(fatal); });

    EXPECT_TRUE(Open());
    EXPECT_TRUE(ShowPage(programPage));
    Destroy();
    EXPECT_TRUE(Open()) << "again";

    OnGui([before] { g_log_set_always_fatal(before); });
}

TEST_F(LifeCycle, NullAnswersAreDropped)
{
    ASSERT_TRUE(Open());

    EXPECT_EQ(plugin.answerReadVar(nullptr), 0);
    EXPECT_EQ(plugin.answerProgramState(nullptr), 0);
}

TEST_F(LifeCycle, DestroyReleasesTheVariablesAndRemovesTheWindow)
{
    UseList({"MW20/D", "EB3/H"});
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Requests({"read 0 MW20", "start 0", "read 1 EB3", "start 1"}));

    Destroy();

    EXPECT_EQ(OnGui(Frame), nullptr);
    EXPECT_TRUE(Requests({"release 0", "release 1"}));
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
}

TEST_F(LifeCycle, ASecondDestroyIsHarmless)
{
    ASSERT_TRUE(Open());
    Destroy();

    Destroy();

    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
    EXPECT_TRUE(SendsNothing());
}

TEST_F(LifeCycle, TheCloseBoxReleasesTheVariablesAndDestroyThenOnlyEndsTheToolkit)
{
    UseList({"MW20/D", "EB3/H"});
    ASSERT_TRUE(Open());
    TakeRequests();

    CloseFrame();

    EXPECT_TRUE(FrameGoes());
    EXPECT_TRUE(Requests({"release 0", "release 1"}));
    EXPECT_TRUE(Await("answers dropped", [&] { return Answer(0, 1) == 0; }));
    EXPECT_TRUE(ToolkitRuns());
    Destroy();
    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
    EXPECT_TRUE(SendsNothing());
}

TEST_F(LifeCycle, TheWindowManagersKeyClosesTheWindow)
{
    ASSERT_TRUE(Open());

    hands.Press(XK_F4, XK_Alt_L);

    EXPECT_TRUE(FrameGoes());
    EXPECT_TRUE(Await("answers dropped", [&] { return Answer(0, 1) == 0; }));
}

TEST_F(LifeCycle, DestroyRightAfterTheCloseBoxRunsTheExitWorkOnce)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    OnGui([&] {
        Frame()->Close();
        plugin.destroy();
    });

    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_TRUE(SendsNothing());
    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
}

TEST_F(LifeCycle, TheExitItemHidesTheWindowAndAnswersAreStillTaken)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    ChooseMenu(wxID_EXIT);

    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_TRUE(Await("the frame hidden", [] { return !Frame()->IsShown(); }));
    EXPECT_EQ(Answer(0, 1), 1);
    Destroy();
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_TRUE(SendsNothing()) << "the exit work runs once";
}

TEST_F(LifeCycle, NoAnswerChangesTheListAfterTheExitItem)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    ChooseMenu(wxID_EXIT);
    ASSERT_TRUE(Await("the frame hidden", [] { return !Frame()->IsShown(); }));

    Answer(0, 1);

    AwaitThreeTicks();
    EXPECT_EQ(OnGui(WatchList), (Words{"MW 20|?|T30"}));
}

TEST_F(LifeCycle, AnswersAfterTheExitItemCostNoMemory)
{
    constexpr int answers = 10000;
    ASSERT_TRUE(Open());
    ChooseMenu(wxID_EXIT);
    ASSERT_TRUE(Await("the frame hidden", [] { return !Frame()->IsShown(); }));
    const std::size_t before = HeapInUse();

    for (int i = 0; i < answers; ++i) {
        EXPECT_EQ(Answer(static_cast<std::uint16_t>(i), i), 1);
    }

    constexpr std::size_t fewBytes = 100000; // what the toolkits do meanwhile
    EXPECT_LT(HeapInUse(), before + fewBytes);
}

TEST_F(LifeCycle, TheDebuggerOpensAndClosesAgainAndAgainInTheSameMemory)
{
    constexpr int defaultRounds = 40;
    const int rounds = FromEnvironment("LIFE_CYCLES", defaultRounds);
    UseList({"MW20/D"});
    std::size_t heapAtHalf = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        if (round == rounds / 2) {
            heapAtHalf = HeapInUse();
        }
        ASSERT_TRUE(Open());
        ASSERT_TRUE(Requests({"read 0 MW20", "start 0"})) << "a new debugger counts from 0";
        EXPECT_EQ(Answer(0, round), 1);
        ASSERT_TRUE(Shows({"MW 20|" + std::to_string(round) + "|T30"}));
        ASSERT_TRUE(ShowPage(programPage));
        ASSERT_TRUE(Requests({"state 0..1 count 2"}));

        if (round % 3 == 0) {
            CloseFrame();
        } else if (round % 3 == 1) {
            ChooseMenu(wxID_EXIT);
        } else {
            Destroy();
        }
        ASSERT_TRUE(Requests({"release 0", "stop"}));
        Destroy();
        ASSERT_TRUE(FrameGoes());
        ASSERT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
    }
    const long grown = static_cast<long>(HeapInUse()) - static_cast<long>(heapAtHalf);
    const long perRound = grown / (rounds - rounds / 2);
    std::printf(
        "heap: %zu KiB at half of %d rounds, %+ld bytes per round since\n",
        heapAtHalf / 1024,
        rounds,
        perRound);
    constexpr long allowed = 4096;
    EXPECT_LT(perRound, allowed);
}

TEST_F(LifeCycle, AnswersDuringCreateAreDropped)
{
    UseList({"MW20/D"});
    int taken = -1;
    host.reaction = [&](const RecordedRequest&) { taken = Answer(0, 1); };

    ASSERT_TRUE(Open());

    OnGui([this] { host.reaction = nullptr; });
    EXPECT_EQ(taken, 0);
    AwaitThreeTicks();
    EXPECT_EQ(OnGui(WatchList), (Words{"MW 20|?|T30"}));
}

TEST_F(LifeCycle, CallbacksThatTheHostLeftNullAreNotCalled)
{
    UseList({"MW20/D"});
    host.init.pfnTallFrame = nullptr;
    host.init.pfnReadVarRequest = nullptr;
    host.init.pfnWriteVarRequest = nullptr;
    host.init.pfnPrgStateRequest = nullptr;
    host.init.pfnDeleteVarRequest = nullptr;

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetMaxHeight(); }), 514);
    EnterValue(0, "5");
    EXPECT_TRUE(ShowPage(programPage));
    AwaitThreeTicks();
    CloseFrame();
    EXPECT_TRUE(FrameGoes());
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(LifeCycle, TheHostsRecordMayGoAfterCreate)
{
    ASSERT_TRUE(Open());

    OnGui([this] { host.init = {}; });

    Define("1.0");
    EXPECT_TRUE(Requests({"read 0 A1.0", "start 0"}));
}

TEST_F(LifeCycle, AProgramDebugFileWithoutBlocksThrowsOutOfRangeAndLeavesNothingBehind)
{
    UseList({"MW20/D", "EB3/H"});
    UseProgram({});

    EXPECT_THROW(Create(), std::out_of_range);

    EXPECT_EQ(OnGui(Frame), nullptr);
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_TRUE(
        Requests({"read 0 MW20", "start 0", "read 1 EB3", "start 1", "release 0", "release 1"}));
    EXPECT_TRUE(SendsNothing());
    Destroy();
    EXPECT_EQ(ToolkitRuns(), HostOwnsTheToolkit());
}

TEST_F(LifeCycle, AfterAProgramDebugFileWithoutBlocksTheDebuggerCanBeOpenedAgain)
{
    UseProgram({});
    EXPECT_THROW(Create(), std::out_of_range);
    Destroy();
    UseProgram({{"U E 0.0"}});

    ASSERT_TRUE(Open());

    EXPECT_EQ(Answer(0, 1), 1);
}

TEST_F(LifeCycle, AMissingProgramDebugFileIsReportedTwiceAndTheWindowOpens)
{
    const std::string message = "message [T85] T92 " + files.File("machine_plcdbgi.dat");
    std::filesystem::remove(files.File("machine_plcdbgi.dat"));
    int created = -1;
    PostToGui([&] { created = plugin.create(&host.init); });

    EXPECT_TRUE(AnswerDialog(message, wxID_OK));
    EXPECT_TRUE(AnswerDialog(message, wxID_OK));

    EXPECT_TRUE(Await("created", [&] { return created == 1; }));
}

TEST_F(LifeCycle, APathWithoutATerminatingZeroEndsWithItsField)
{
    const std::string name = "machine";
    std::string path = files.Path().string() + "/";
    while (path.size() + name.size() < PLC_PATH_SIZE) {
        path += (PLC_PATH_SIZE - path.size() - name.size()) % 2 == 0 ? "./" : "/";
    }
    path += name;
    ASSERT_EQ(path.copy(host.init.szPath, PLC_PATH_SIZE), path.size());

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetTitle(); }), "T49") << "the configuration is found";
}

TEST_F(LifeCycle, APathWithUmlautsIsFoundInAHostWithoutALocale)
{
    const std::string folder = files.File("m\xC3\xBCller");
    std::filesystem::create_directory(folder);
    for (const char* name : {"plcdebug.ini", "machine_plcdbgi.dat"}) {
        std::filesystem::copy_file(files.File(name), folder + "/" + name);
    }
    const std::string path = folder + "/machine";
    host.init.szPath[path.copy(host.init.szPath, PLC_PATH_SIZE)] = '\0';
    const std::string before = OnGui([] {
        std::string locale = std::setlocale(LC_ALL, nullptr);
        std::setlocale(LC_ALL, "C");
        return locale;
    });

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetTitle(); }), "T49") << "the configuration is found";
    OnGui([&before] { std::setlocale(LC_ALL, before.c_str()); });
}

TEST_F(LifeCycle, APathThatIsNoTextInTheLocaleIsAMissingFileOnly)
{
    const std::string path = "/\xff\xfe/no such folder/machine";
    host.init.szPath[path.copy(host.init.szPath, PLC_PATH_SIZE)] = '\0';
    OpenBehindMessages();

    for (int box = 0; box < 2; ++box) {
        const auto isOpen = [this] { return watch.Innermost() != nullptr; };
        ASSERT_TRUE(Await("a message", isOpen));
        EXPECT_TRUE(AnswerDialog(OnGui([this] { return watch.InnermostInWords(); }), wxID_OK));
    }

    EXPECT_TRUE(WindowOpens());
}
