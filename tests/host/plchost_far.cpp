#include "debugfile.h"
#include "file.h"
#include "playedmachine.h"
#include "plchosttest.h"
#include "waitfor.h"

#include <gmock/gmock.h>

#include <filesystem>

// plchost with a machine far away.

namespace plchost {
namespace {

using plclink::LinkStatus;
using testing::HasSubstr;

class PlcHostFarAway : public PlcHost
{
protected:
    void SetUp() override
    {
        PlcHost::SetUp();
        options.deviceName = "mqtts://service@127.0.0.1:" + broker.Port() + "/hall1/press7";
        options.farMachine = broker.Address("service", "press7");
        options.access = broker.Access("service");
        machine.Set("MW20", 17);
    }

    void OpenAsSoonAsTheMachineIsKnown()
    {
        Click(english.openDebugger);
        ASSERT_TRUE(WaitFor("debugger", [this] { return !fake.calls.empty(); }));
    }

    /// What the debugger has opened on.
    std::string OpenedOn() const { return base::ReadFile(ground.files.debugFile).operator*(); }

    const std::string listing = DebugFile({{"OB1", 1, ExecutableLines(3)}});
    Broker broker{{"press7", "service"}};
    PlayedMachine machine{broker, broker.Port()};
};

TEST_F(PlcHostFarAway, AnswersWhatTheMachineHas)
{
    machine.TellState({LinkStatus::Running});

    Run([this] {
        EXPECT_EQ(Window().get_title(), options.deviceName);
        EXPECT_TRUE(WaitForText(english.isFarAway));
        OpenAsSoonAsTheMachineIsKnown();

        fake.Watch(1, "MW20");

        EXPECT_TRUE(WaitForValue({1, 17}));
        EXPECT_TRUE(WaitForText(english.linkRunning));
    });
}

TEST_F(PlcHostFarAway, OpensTheDebuggerOnTheListingOfTheMachine)
{
    options.debugger = true;
    machine.Send("listing", listing, true);
    machine.TellState({LinkStatus::Running}, true);

    Run([this] {
        EXPECT_TRUE(WaitFor("debugger", [this] { return !fake.calls.empty(); }));
        EXPECT_EQ(OpenedOn(), listing);
    });
}

TEST_F(PlcHostFarAway, BeginsWithAListOfWhatTheMachineTells)
{
    machine.TellState({LinkStatus::Running});

    Run([this] {
        OpenAsSoonAsTheMachineIsKnown();

        EXPECT_EQ(dir.Read("hall1-press7.plc"), "MW20/D\n");
    });
}

TEST_F(PlcHostFarAway, KeepsTheListThatTheOperatorHasUsedLast)
{
    dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=" + dir.File("my.plc") + '\n');
    machine.TellState({LinkStatus::Running});

    Run([this] {
        OpenAsSoonAsTheMachineIsKnown();

        EXPECT_FALSE(std::filesystem::exists(dir.File("hall1-press7.plc")));
        EXPECT_THAT(dir.Read("plcdebug.ini"), HasSubstr("my.plc"));
    });
}

TEST_F(PlcHostFarAway, SaysThatAListingIsTornAndOpensWithoutIt)
{
    machine.Send("listing", listing.substr(0, listing.size() - 1), true);
    machine.TellState({LinkStatus::Running}, true);

    Run([this] {
        OpenAsSoonAsTheMachineIsKnown();

        EXPECT_TRUE(WaitForText("the machine's listing is not shown: it is no whole program"));
        EXPECT_THAT(OpenedOn(), HasSubstr(english.noListingHasCome));
    });
}

TEST_F(PlcHostFarAway, SaysThatTheMachineHasNoListing)
{
    machine.TellState({LinkStatus::Running});

    Run([this] {
        OpenAsSoonAsTheMachineIsKnown();

        EXPECT_THAT(OpenedOn(), HasSubstr(english.noListingHasCome));
    });
}

TEST_F(PlcHostFarAway, OpensTheDebuggerWithoutAMachineToo)
{
    broker.Stop();

    Run([this] {
        OpenAsSoonAsTheMachineIsKnown();

        EXPECT_TRUE(WaitForText(english.linkLost));
    });
}

TEST_F(PlcHostFarAway, MarksAMachineThatIsSilent)
{
    machine.TellState({LinkStatus::Running});

    Run([this] {
        EXPECT_TRUE(WaitForText(english.linkRunning));

        machine.Silence(true);

        EXPECT_TRUE(WaitForText(english.linkLost));
        EXPECT_TRUE(WaitForText("the broker is there, and the machine says nothing"));
    });
}

TEST_F(PlcHostFarAway, CountsMessagesThatAreLost)
{
    Run([this] {
        EXPECT_TRUE(WaitForText(english.linkRunning));

        machine.LoseNext();

        EXPECT_TRUE(WaitForText(std::string(english.lostMessages) + ": 1"));
    });
}

TEST_F(PlcHostFarAway, KeepsItsFilesInAFolderByPlantAndMachine)
{
    options.configFolder.clear();

    const ConfigFiles files = Prepare(options).files;

    EXPECT_THAT(files.folder, testing::EndsWith("/plchost/device/hall1-press7"));
}

} // namespace
} // namespace plchost
