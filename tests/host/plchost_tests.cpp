#include "exit_status.h"
#include "file.h"
#include "live_machine.h"
#include "plchosttest.h"
#include "projectfile.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtkmm/main.h>

#include <algorithm>
#include <filesystem>
#include <thread>

namespace plchost {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// ---- What is found, read and written before the window opens

TEST_F(PlcHost, TakesTheDataOfTheFolderThatIsNamed)
{
    const std::string data = dir.File("data");
    fs::create_directories(data);
    options.dataFolder = data;
    options.program = ProjectFile("samples/bottling/bottling.il");

    EXPECT_EQ(Prepare(options).dataFolder, data);
}

TEST_F(PlcHost, SpeaksTheLanguageThatIsNamedElseThatOfLastTime)
{
    ASSERT_TRUE(WriteSettings(dir.File("plcdebug.ini"), {"", "de"}));

    EXPECT_EQ(Prepare(options).language, "en");
    options.language.clear();
    EXPECT_EQ(Prepare(options).language, "de");
}

TEST_F(PlcHost, ComesWithTheWatchListOfTheLine)
{
    Prepare(options);

    EXPECT_EQ(
        dir.Read("bottling.plc"), *base::ReadFile(ProjectFile("samples/bottling/bottling.plc")));
}

// ---- The window

TEST_F(PlcHost, SaysOnItsButtonWhatTheButtonDoes)
{
    Run([this] {
        OpenDebugger();
        Click(english.closeDebugger);
        EXPECT_THAT(fake.calls, ElementsAre("create", "destroy"));
        OpenDebugger();
    });
}

TEST_F(PlcHost, GivesTheDebuggerTheLanguageThatIsChosenInTheWindow)
{
    options.language = "de";

    Run([this] {
        EXPECT_TRUE(WaitForText(TextsIn("de").openDebugger));

        All<Gtk::ComboBoxText>(Window()).front()->set_active_id("en");
        OpenDebugger();

        EXPECT_EQ(ReadLanguage(ground.files.settings), "en");
        EXPECT_THAT(dir.Read("plcdebug.ini"), HasSubstr(options.dataFolder + "/languages\n"));
    });
}

TEST_F(PlcHost, ShowsHowTheMachineIs)
{
    Run([this] {
        EXPECT_TRUE(WaitForText(english.running));

        Click(english.stop);

        EXPECT_TRUE(WaitForText(english.standing));
    });
}

TEST_F(PlcHost, RunsASampleByItsNameWithItsProcess)
{
    options.sample = "lift";

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "E2.4"); // the emergency stop, which only the process releases
        EXPECT_TRUE(WaitForValue({1, 1}));
    });
}

TEST_F(PlcHost, RunsBothKindsOfMachineAtTheCycleTimeThatIsChosen)
{
    options.cycle = 25ms;
    for (const char* program : {"", "samples/mixer/mixer.il"}) {
        options.program = *program == '\0' ? "" : ProjectFile(program);

        Run([] { EXPECT_TRUE(WaitForText(" 25 ms,")); });
    }
}

TEST_F(PlcHost, EndsWhenItsWindowIsClosedWithTheDebuggerOpen)
{
    EXPECT_EQ(Run([this] { OpenDebugger(); }), exitGood);

    EXPECT_THAT(fake.calls, ElementsAre("create", "destroy"));
}

TEST_F(PlcHost, OpensTheDebuggerAtTheStartWhenItIsTold)
{
    options.debugger = true;

    Run([this] { EXPECT_TRUE(WaitFor("debugger", [this] { return !fake.calls.empty(); })); });
}

TEST_F(PlcHost, PressesTheStartButtonOfTheLineAndLetsItGo)
{
    const Plugin plugin = Library();
    PluginAnswers answers(plugin);
    LiveMachine machine(
        std::make_unique<plclink::SoftPlc>(
            Prepare(options).program, samples::FindSampleMachine("bottling"), options.cycle),
        answers,
        {[](const std::string&) {}, [](const std::string&) {}});
    machine.Requests().Request(PlcMakeReadRequest(1, "E0.0"));
    machine.Requests().Request(PlcMakeDeleteRequest(1, PLC_DELETE_ARG_START));

    machine.Start();

    EXPECT_TRUE(WaitForValue({1, 1}));
    EXPECT_TRUE(WaitFor("it to be let go", [this] { return fake.Values().back() == Value(1, 0); }));
}

// ---- Debugger and machine

TEST_F(PlcHost, SeesThatTheOperatorHasClosedTheDebugger)
{
    Run([this] {
        OpenDebugger();

        gtk_widget_destroy(std::exchange(fake.window, nullptr));

        EXPECT_TRUE(WaitFor("destroy", [this] { return fake.calls.back() == "destroy"; }));
    });
}

TEST_F(PlcHost, LetsTheDebuggerBeTallOnATallScreen)
{
    Run([this] {
        OpenDebugger();

        EXPECT_EQ(fake.init.pfnTallFrame(), 1);
    });
}

TEST_F(PlcHost, AnswersNothingThatAnEarlierDebuggerHasAskedFor)
{
    Run([this] {
        OpenDebugger();
        fake.Watch(7, "E0.2");
        EXPECT_TRUE(WaitForValue({7, 1}));
        Click(english.closeDebugger);
        const auto before = static_cast<std::ptrdiff_t>(fake.Values().size());
        OpenDebugger();
        fake.Watch(8, "E0.2");

        // Whatever is watched is answered again from time to time.
        EXPECT_TRUE(WaitForValue({8, 1}, 2));
        const auto values = fake.Values();
        EXPECT_EQ(std::count(values.begin() + before, values.end(), Value(7, 1)), 0);
    });
}

TEST_F(PlcHost, PrintsNoTraceUnasked)
{
    testing::internal::CaptureStdout();

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "E0.2");
        EXPECT_TRUE(WaitForValue({1, 1}));
    });

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(PlcHost, PrintsATraceWhenAsked)
{
    options.trace = true;
    testing::internal::CaptureStdout();

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "E0.2");
        EXPECT_TRUE(WaitForValue({1, 1}));
    });

    const std::string trace = testing::internal::GetCapturedStdout();
    EXPECT_THAT(
        trace, AllOf(HasSubstr("-> read    key 1  E0.2"), HasSubstr("<- value   key 1  1")));
}

TEST_F(PlcHost, MisbehavesTowardsTheDebuggerAsItIsTold)
{
    options.fault = Fault::WrongKey;

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "E0.2");
        EXPECT_TRUE(WaitForValue({1, 1}));
    });

    EXPECT_NE(fake.Values().front().first, 1);
}

TEST_F(PlcHost, DeliversLateAnswersInTheEnd)
{
    options.fault = Fault::LateAnswer;
    options.cycle = 1ms;

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "E0.2");
        EXPECT_TRUE(WaitForValue({1, 1}));
    });
}

// ---- What goes wrong

TEST_F(PlcHost, SaysInItsWindowThatTheProgramDebugFileIsMissing)
{
    Run([this] {
        fs::remove(ground.files.debugFile);

        Click(english.openDebugger);

        EXPECT_TRUE(WaitForText("no program debug file \"" + ground.files.debugFile));
        EXPECT_THAT(fake.calls, IsEmpty());
    });
}

TEST_F(PlcHost, EndsBadlyWhenTheDebuggerOfATimedRunDoesNotOpen)
{
    options.debugger = true;
    options.run = 1h;
    fake.created = 0;

    EXPECT_EQ(Run([] { EXPECT_TRUE(WaitForText("the debugger does not open")); }), exitFailed);
}

TEST_F(PlcHost, TellsOnceThatTheThreadRuleIsBroken)
{
    testing::internal::CaptureStderr();
    fake.duringCreate = [this] { std::thread([this] { fake.Watch(1, "E0.2"); }).join(); };

    const int status = Run([this] {
        OpenDebugger();
        EXPECT_TRUE(WaitForText("another thread"));
        WaitForSomeLooks();
    });

    EXPECT_EQ(Count(testing::internal::GetCapturedStderr(), "another thread"), 1);
    EXPECT_EQ(status, exitThreadRule);
}

} // namespace
} // namespace plchost

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    const Gtk::Main toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
