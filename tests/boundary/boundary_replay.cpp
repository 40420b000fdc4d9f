#include "bridge.h"
#include "debuggertest.h"
#include "machine_link.h"
#include "player.h"
#include "record.h"
#include "recorder.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

// What a debugger has shown while it was recorded is shown again by one that plays the recording.

namespace {

using plchost::AnswerKind;
using namespace std::chrono_literals;

class Replay : public DebuggerTest
{
protected:
    /// The way of an answer that is recorded: recorder -> debugger.
    class Exports : public plchost::AnswerSink
    {
    public:
        explicit Exports(const plchost::Plugin& plugin) : m_plugin(plugin) {}

        bool Answer(AnswerKind kind, const CMD_DATA* answer) override
        {
            CMD_DATA copy = *answer;
            auto* bytes = reinterpret_cast<unsigned char*>(&copy);
            return (kind == AnswerKind::ReadVar ? m_plugin.answerReadVar(bytes)
                                                : m_plugin.answerProgramState(bytes)) != 0;
        }

    private:
        const plchost::Plugin& m_plugin;
    };

    /// Opens a debugger whose requests go to the recording.
    testing::AssertionResult OpenRecorded()
    {
        recorder.emplace(files.File("machine.rec"), files.Read("machine_plcdbgi.dat"));
        OnGui([this] {
            host.reaction = [this](const RecordedRequest& request) {
                recorder->Request(request.record);
            };
        });
        return Open();
    }

    bool AnswerRecorded(AnswerKind kind, const CMD_DATA& answer)
    {
        return plchost::RecordedAnswers(exports, &*recorder).Answer(kind, &answer);
    }

    /// Ends the recorded debugger and opens one that is served by the recording, whole.
    testing::AssertionResult OpenReplayed()
    {
        Destroy();
        recorder.reset();
        const auto recording = plchost::ReadRecording(files.File("machine.rec"));
        if (!recording) {
            return testing::AssertionFailure() << recording.Message();
        }
        OnGui([&] {
            auto made = std::make_unique<plchost::Player>(*recording, 1);
            player = made.get();
            link.emplace(std::move(made));
            link->Start();
            const plchost::Log nobody = [](const std::string&) {};
            bridge.emplace(exports, *link, plchost::MachineLog{nobody, nobody});
            host.reaction = [this](const RecordedRequest& request) {
                bridge->Request(request.record);
            };
        });
        testing::AssertionResult opened = Open();
        OnGui([this] {
            player->Advance({});
            player->Advance(plchost::Player::Clock::time_point(1h));
        });
        return opened;
    }

    /// What the state columns of the program page read.
    static Words States()
    {
        wxGrid& grid = GridOn(programPage);
        Words rows;
        for (int row = 0; row < grid.GetNumberRows(); ++row) {
            rows.push_back(
                (grid.GetCellValue(row, 0) + "|" + grid.GetCellValue(row, 1)).utf8_string());
        }
        return rows;
    }

    Exports exports{plugin};
    std::optional<plchost::Recorder> recorder;
    // GUI thread.
    plchost::Player* player = nullptr; ///< Belongs to the link.
    std::optional<plclink::MachineLink> link;
    std::optional<plchost::Bridge> bridge;
};

} // namespace

TEST_F(Replay, ShowsTheRecordedValuesInAListOfAnotherOrder)
{
    UseList({"MW20/D", "EB3/D"});
    ASSERT_TRUE(OpenRecorded());
    EXPECT_TRUE(AnswerRecorded(AnswerKind::ReadVar, PlcMakeReadAnswer(0, -7)));
    EXPECT_TRUE(AnswerRecorded(AnswerKind::ReadVar, PlcMakeReadAnswer(1, 5)));
    ASSERT_TRUE(Shows({"MW 20|-7|T30", "EB 3|5|T30"}));
    UseList({"EB3/D", "MB1/D", "MW20/D"});

    ASSERT_TRUE(OpenReplayed());

    EXPECT_TRUE(Shows({"EB 3|5|T30", "MB 1|?|T30", "MW 20|-7|T30"}));
}

TEST_F(Replay, ShowsTheRecordedProgramState)
{
    ASSERT_TRUE(OpenRecorded());
    ASSERT_TRUE(ShowPage(programPage));
    ASSERT_TRUE(Await("steps asked for", [this] { return !host.requests.empty(); }));
    const auto steps = OnGui([this] {
        return plchost::RequestedSteps(host.requests.back().record).value_or(plc::StepRange{});
    });
    const Words unknown = OnGui(States);
    EXPECT_TRUE(AnswerRecorded(
        AnswerKind::ProgramState,
        plchost::MakeProgramStateAnswer(steps, {{true, 17}, {false, std::nullopt}})));
    ASSERT_TRUE(Await("the states", [&] { return States() != unknown; }));
    const Words recorded = OnGui(States);

    ASSERT_TRUE(OpenReplayed());

    EXPECT_TRUE(ShowPage(programPage));
    EXPECT_EQ(OnGui(States), unknown);
    OnGui([this] { player->Advance(plchost::Player::Clock::time_point(2h)); });
    EXPECT_TRUE(Await("the recorded states", [&] { return States() == recorded; }));
}
