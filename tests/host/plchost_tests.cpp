#include "exit_status.h"
#include "file.h"
#include "live_machine.h"
#include "plchosttest.h"
#include "projectfile.h"
#include "replay_machine.h"
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
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// How often a text holds another one.
int Count(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

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

TEST_F(PlcHost, KeepsTheFilesOfARecordingApartFromThoseOfTheMachine)
{
    options.replay = Recorded({});
    options.configFolder.clear();
    const std::string recording = Prepare(options).files.folder;
    options.replay.clear();
    const std::string machine = Prepare(options).files.folder;

    EXPECT_THAT(machine, EndsWith("/plchost"));
    EXPECT_EQ(recording, machine + "/replay");
}

TEST_F(PlcHost, TakesAsManyVariablesOfARecordingAsTheDebuggerWatches)
{
    constexpr int asked = 25;
    std::vector<RecordedEvent> events;
    events.reserve(asked);
    for (int key = 0; key < asked; ++key) {
        events.push_back(Asked(0us, key));
    }
    options.replay = Recorded(events);

    Prepare(options);

    const std::string list = dir.Read("run.plc");
    EXPECT_EQ(Count(list, "\n"), 20);
    EXPECT_THAT(list, AllOf(HasSubstr("MB0/D\n"), HasSubstr("MB19/D\n"), Not(HasSubstr("MB20"))));
}

TEST_F(PlcHost, SaysThatARecordingIsTorn)
{
    options.replay = Recorded({Asked(0us, 1)});
    fs::resize_file(options.replay, fs::file_size(options.replay) - 1);
    testing::internal::CaptureStderr();

    Prepare(options);

    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("the recording is torn"));
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

TEST_F(PlcHost, RecordsTheListingToo)
{
    options.record = dir.File("run.rec");

    Run([] {});

    const auto recording = ReadRecording(options.record);
    ASSERT_TRUE(recording);
    EXPECT_EQ(recording->listing, dir.Read("bottling_plcdbgi.dat"));
    EXPECT_THAT(recording->listing, Not(IsEmpty()));
}

TEST_F(PlcHost, PlaysARecordingAtTheSpeedThatIsChosen)
{
    options.replay = Recorded({Asked(600s, 1)});
    options.speed = 1000;

    Run([this] {
        OpenDebugger();

        EXPECT_TRUE(WaitFor("end", [] { return Progress(Window()) == "600.0 s / 600.0 s"; }));
    });
}

TEST_F(PlcHost, PlaysARecordingOnlyWhileADebuggerIsOpen)
{
    struct : AnswerSink
    {
        bool Answer(AnswerKind, const CMD_DATA*) override { return true; }
    } answers;

    int ticks = 0;
    ReplayMachine machine(
        std::make_unique<Player>(Recording{"", {Asked(600s, 1)}, ""}, 1000),
        answers,
        [&ticks] { ++ticks; },
        {[](const std::string&) {}, [](const std::string&) {}});
    const auto window = machine.MakeWindow("en", {});
    const auto position = [&window] {
        window->Refresh();
        return Progress(*window);
    };

    machine.Start();
    EXPECT_TRUE(WaitFor("ticks", [&ticks] { return ticks >= 3; }));
    EXPECT_EQ(position(), "0.0 s / 600.0 s");

    machine.OnDebugger(true);
    EXPECT_TRUE(WaitFor("it to be played", [&] { return position() != "0.0 s / 600.0 s"; }));
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

TEST_F(PlcHost, TellsOnceThatARecordingEndsEarly)
{
    testing::internal::CaptureStderr();
    options.record = "/dev/full";

    Run([this] {
        OpenDebugger();
        EXPECT_TRUE(WaitForText("ends early"));
        WaitForSomeLooks();
    });

    EXPECT_EQ(Count(testing::internal::GetCapturedStderr(), "ends early"), 1);
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
