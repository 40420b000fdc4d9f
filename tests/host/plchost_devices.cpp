#include "child.h"
#include "file.h"
#include "plchosttest.h"
#include "projectfile.h"
#include "waitfor.h"

#include <gmock/gmock.h>

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
