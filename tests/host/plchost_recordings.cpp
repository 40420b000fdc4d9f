#include "plchosttest.h"
#include "replay_machine.h"
#include "waitfor.h"

#include <gmock/gmock.h>

#include <filesystem>

// What the host records, and what it plays.

namespace plchost {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

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
