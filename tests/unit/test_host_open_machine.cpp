#include "cycle_time.h"
#include "file.h"
#include "machine_link.h"
#include "open_machine.h"
#include "projectfile.h"
#include "recording.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <string>

namespace plchost {
namespace {

using testing::HasSubstr;

/// @return why a machine cannot be opened; empty when it can.
std::string Refusal(const std::string& address, const std::string& map = "")
{
    const auto opened = OpenMachine({*plclink::ParseAddress(address), map, ProjectFile("")});
    return opened ? "" : opened.Message();
}

TEST(OpenMachine, OpensEverySampleAndEveryProgram)
{
    for (const char* name : {"bottling", "crossing", "instructions", "lift", "mixer"}) {
        EXPECT_EQ(Refusal(std::string("soft:") + name), "");
    }
    EXPECT_EQ(Refusal("soft:" + ProjectFile("samples/lift/lift.il")), "");
}

TEST(OpenMachine, SaysWhichFileCannotBeOpened)
{
    EXPECT_THAT(Refusal("soft:/nowhere/a.il"), HasSubstr("/nowhere/a.il"));
    EXPECT_THAT(Refusal("recording:/nowhere/a.rec"), HasSubstr("/nowhere/a.rec"));
    EXPECT_THAT(Refusal("recording:" + ProjectFile("README.md")), HasSubstr("is no recording"));
}

TEST(OpenMachine, OpensADeviceThatIsNotThereButNeedsItsMap)
{
    const TempDir dir;
    const std::string map =
        dir.Write("oven.map", "[range a]\noperands = MW0..MW8\ntable = holding\nstart = 0\n");
    const std::string wrong = dir.Write("wrong.map", "[range a]\ntable = x\n");

    EXPECT_EQ(Refusal("modbus://nowhere.invalid/1", map), "");
    EXPECT_THAT(Refusal("modbus://nowhere.invalid/1", wrong), HasSubstr("wrong.map:2: "));
    EXPECT_THAT(Refusal("modbus://nowhere.invalid/1", "/nowhere/a"), HasSubstr("/nowhere/a"));
}

/// A recording of MW20, which is 17.
std::string OneValueRecorded()
{
    const CMD_DATA request = PlcMakeReadRequest(7, "MW20");
    const CMD_DATA answer = PlcMakeReadAnswer(7, 17);
    return EncodeRecordingHead() + EncodeEvent({{}, EventKind::Listing, true, ""}) +
           EncodeEvent({{}, EventKind::Request, true, CountingBytes(&request)}) +
           EncodeEvent({{}, EventKind::ReadAnswer, true, CountingBytes(&answer)});
}

TEST(OpenMachine, EachMachineKnowsHowOftenItTellsItsValues)
{
    const TempDir dir;
    const std::string map = dir.Write(
        "oven.map",
        "[device]\npoll = 250\n"
        "[range a]\noperands = MW0..MW8\ntable = holding\nstart = 0\n");
    const std::string recording = dir.Write("run.rec", OneValueRecorded());
    const auto turn = [&map](const std::string& address) {
        const auto opened = OpenMachine({*plclink::ParseAddress(address), map, ProjectFile("")});
        EXPECT_TRUE(opened);
        return opened ? (*opened)->TurnTime() : std::chrono::milliseconds{};
    };

    EXPECT_EQ(turn("soft:lift"), plc::usualCycle);
    EXPECT_EQ(turn("modbus://oven/1"), std::chrono::milliseconds(250));
    EXPECT_EQ(turn("recording:" + recording), plclink::refreshTime);
}

/// Keeps its first value.
class FirstValue : public plclink::Watcher
{
public:
    bool OnReading(const plclink::Reading& reading) override
    {
        if (!std::exchange(m_isKnown, true)) {
            m_value.set_value(reading.value);
        }
        return true;
    }

    void OnUnreadable(const std::string&) override {}

    std::uint32_t Await() { return m_value.get_future().get(); }

private:
    bool m_isKnown = false;
    std::promise<std::uint32_t> m_value;
};

TEST(OpenMachine, ARecordingPlaysByItself)
{
    const TempDir dir;
    const std::string file = dir.File("run.rec");
    ASSERT_TRUE(base::ReplaceFile(file, OneValueRecorded()));
    auto opened = OpenMachine({plclink::RecordingAddress{file}});
    ASSERT_TRUE(opened);
    FirstValue value;
    plclink::MachineLink link(*std::move(opened));
    link.Watch(value, plc::ParseOperand("MW20").value());

    link.Start();

    EXPECT_EQ(value.Await(), 17U);
}

TEST(OpenMachine, ARecordingTakesNoValues)
{
    const TempDir dir;
    const std::string file = dir.File("run.rec");
    ASSERT_TRUE(base::ReplaceFile(file, OneValueRecorded()));
    auto opened = OpenMachine({plclink::RecordingAddress{file}});
    ASSERT_TRUE(opened);
    plclink::MachineLink link(*std::move(opened));
    link.Start();
    std::string said;

    link.Write(plc::ParseOperand("MW20").value(), 1, [&said](const base::Result<void>& done) {
        said = done ? "" : done.Message();
    });

    EXPECT_THAT(said, HasSubstr("takes no values"));
}

} // namespace
} // namespace plchost
