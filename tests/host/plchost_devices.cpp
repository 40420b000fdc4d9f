#include "child.h"
#include "file.h"
#include "plchosttest.h"
#include "projectfile.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtkmm/treeview.h>

#include <csignal>
#include <memory>

// plchost with a Modbus device that others have written.

namespace plchost {
namespace {

using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::Pair;

class PlcHostAtADevice : public PlcHost
{
protected:
    void SetUp() override
    {
        PlcHost::SetUp();
        StartDevice("0");
        options.deviceName = "modbus://127.0.0.1:" + m_port + "/1";
        options.device = *plclink::ParseModbusAddress(options.deviceName);
        options.map = dir.Write(
            "oven.map",
            "[device]\npoll = 20\ntimeout = 300\n"
            "[range a]\noperands = MW0..MW98\ntable = holding\nstart = 0\nwrite = yes\n");
    }

    /// @param port 0: one that the system chooses.
    void StartDevice(const std::string& port)
    {
        m_device = std::make_unique<Child>(std::vector<std::string>{
            "/usr/bin/python3", LINK_TESTS "/modbus_server.py", "tcp", port});
        const std::string ready = m_device->WaitForLine("ready ");
        ASSERT_FALSE(ready.empty());
        m_port = ready.substr(ready.find(' ') + 1);
    }

    void Write(const char* operand, std::int32_t value) const
    {
        const CMD_DATA request = PlcMakeWriteRequest(operand, value);
        fake.init.pfnWriteVarRequest(&request);
    }

    /// Waits for a note beside the first operand that begins so; an empty one for none.
    static testing::AssertionResult WaitForNote(const std::string& begin)
    {
        constexpr int noteColumn = 3;
        return WaitFor("note " + begin, [&begin] {
            const auto rows = All<Gtk::TreeView>(Window()).front()->get_model()->children();
            Glib::ustring note;
            if (!rows.empty()) {
                rows.begin()->get_value(noteColumn, note);
            }
            return begin.empty() ? note.empty() : note.find(begin) == 0;
        });
    }

    std::unique_ptr<Child> m_device;
    std::string m_port;
};

TEST_F(PlcHostAtADevice, AnswersWhatTheDeviceHasAndWritesToIt)
{
    Run([this] {
        EXPECT_EQ(Window().get_title(), options.deviceName);
        OpenDebugger();
        fake.Watch(1, "MW4");
        EXPECT_TRUE(WaitForValue({1, 0x0405}));

        Write("MW4", 17);

        EXPECT_TRUE(WaitForValue({1, 17}));
    });
}

TEST_F(PlcHostAtADevice, ShowsTheOperatorWhyAValueWasNotWritten)
{
    Run([this] {
        OpenDebugger();

        Write("MW200", 17);

        EXPECT_TRUE(WaitForText("MW200"));
        EXPECT_TRUE(Window().get_visible());
    });
}

TEST_F(PlcHostAtADevice, AnswersNothingWrongWhenTheDeviceIsKilledAndComesBack)
{
    Run([this] {
        OpenDebugger();
        fake.Watch(1, "MW4");
        EXPECT_TRUE(WaitForValue({1, 0x0405}));

        m_device.reset();
        StartDevice(m_port);

        fake.Watch(2, "MW6");
        EXPECT_TRUE(WaitForValue({2, 0x0607}));
        EXPECT_THAT(fake.Values(), Each(AnyOf(Pair(1, 0x0405), Pair(2, 0x0607))));
    });
}

TEST_F(PlcHostAtADevice, TellsOfADeviceThatStandsStillAndGoesOn)
{
    testing::internal::CaptureStderr();

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "MW4");
        EXPECT_TRUE(WaitForValue({1, 0x0405}));
        EXPECT_TRUE(WaitForText(english.linkRunning));

        m_device->Signal(SIGSTOP);

        EXPECT_TRUE(WaitForText(english.linkLost));
        EXPECT_TRUE(WaitForText("no answer within 300 ms"));
        EXPECT_TRUE(WaitForText(std::string(english.oldOnes) + ": 1"));
        EXPECT_TRUE(WaitForText(english.lastValues));
        EXPECT_TRUE(WaitForNote(english.oldSince));

        m_device->Signal(SIGCONT);

        EXPECT_TRUE(WaitForText(english.linkRunning));
        EXPECT_TRUE(WaitForNote(""));
        EXPECT_THAT(fake.Values(), Each(Pair(1, 0x0405)));
    });

    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("plchost: the link is running\n"));
    EXPECT_THAT(said, HasSubstr("plchost: the link is lost: no answer within 300 ms\n"));
}

TEST_F(PlcHostAtADevice, IsNotHeldUpByADeviceThatIsNotThere)
{
    m_device.reset();

    Run([this] {
        OpenDebugger();
        fake.Watch(1, "MW4");
        Write("MW4", 17);

        EXPECT_TRUE(WaitForText(english.linkLost));
        EXPECT_TRUE(WaitForText("not connected: "));
        EXPECT_TRUE(fake.Values().empty());
    });
}

TEST_F(PlcHostAtADevice, SaysThatTheControllerGivesNoProgramStates)
{
    Run([this] {
        EXPECT_TRUE(WaitForText(english.noStates));
        OpenDebugger();

        const CMD_DATA states = PlcMakePrgStateRequest(1, 20);
        fake.init.pfnPrgStateRequest(&states);
        fake.Watch(1, "MW4");

        EXPECT_TRUE(WaitForValue({1, 0x0405}));
    });
}

TEST_F(PlcHostAtADevice, HasAListingThatSaysThatNoneWasGiven)
{
    EXPECT_THAT(
        dir.Read(std::filesystem::path(Prepare(options).files.debugFile).filename()),
        HasSubstr(english.noListing));
}

TEST_F(PlcHostAtADevice, ShowsTheListingThatWasGiven)
{
    options.device.reset();
    const std::string given = dir.Write(
        "given", dir.Read(std::filesystem::path(Prepare(options).files.debugFile).filename()));
    options.device = *plclink::ParseModbusAddress(options.deviceName);
    options.listing = given;

    const std::string shown = Prepare(options).files.debugFile;

    EXPECT_EQ(*base::ReadFile(shown), *base::ReadFile(given));
    EXPECT_EQ(std::filesystem::path(shown).filename(), "oven_plcdbgi.dat");
}

TEST_F(PlcHostAtADevice, RefusesAListingThatIsNone)
{
    options.listing = ProjectFile("README.md");

    EXPECT_THROW(Prepare(options), StartError);
}

TEST_F(PlcHostAtADevice, BeginsWithTheListBesideTheMap)
{
    const std::string map = dir.File("maps/oven.map");
    std::filesystem::create_directories(dir.File("maps"));
    std::filesystem::copy_file(options.map, map);
    dir.Write("maps/oven.plc", "MW4/D\n");
    options.map = map;

    Prepare(options);

    EXPECT_EQ(dir.Read("oven.plc"), "MW4/D\n");
}

TEST_F(PlcHostAtADevice, KeepsTheFilesOfEachDeviceApart)
{
    options.configFolder.clear();

    EXPECT_THAT(Prepare(options).files.folder, testing::EndsWith("/plchost/device/oven"));
}

} // namespace
} // namespace plchost
