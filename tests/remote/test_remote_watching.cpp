#include "file.h"
#include "playedmachine.h"
#include "plcwatch.h"
#include "proxy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

// plcwatch with machines far away.

namespace {

using namespace plcremote;
using plclink::LinkStatus;
using testing::HasSubstr;
using testing::StartsWith;

class PlcwatchFarAway : public testing::Test
{
protected:
    PlcwatchFarAway()
    {
        machine.TellState({LinkStatus::Running});
        machine.Set("MW20", 17);
    }

    /// Where the plant is.
    std::string Plant(const std::string& port) const
    {
        return "mqtts://service@127.0.0.1:" + port + "/hall1";
    }

    /// plcwatch with the access of the user "service".
    Child Run(const std::vector<std::string>& words, int output = 1) const
    {
        return Child(PlcwatchCommand(broker, "service", words), output);
    }

    std::string At(const std::string& name) const { return Plant(broker.Port()) + '/' + name; }

    Broker broker{{"press7", "service"}};
    PlayedMachine machine{broker, broker.Port()};
};

constexpr int standardError = 2;

TEST_F(PlcwatchFarAway, ReadsAValue)
{
    EXPECT_EQ(Run({"--machine", At("press7"), "--read", "MW20"}).WaitForEnd(), "17\n");
}

TEST_F(PlcwatchFarAway, WritesAValueThatTheMachineHasReadBack)
{
    Child writes = Run({"--machine", At("press7"), "--write", "MW20=18"}, standardError);

    const auto write = ReadWrite(machine.WaitFor("write", "\"MW20\""));
    ASSERT_TRUE(write) << write.Message();
    machine.Answer(WrittenMessage{write->id, 17, 18, ""});

    EXPECT_EQ(writes.WaitForEnd(), "");
}

TEST_F(PlcwatchFarAway, SaysWhyAValueIsNotWritten)
{
    Child writes = Run({"--machine", At("press7"), "--write", "MW20=18"}, standardError);

    const auto write = ReadWrite(machine.WaitFor("write", "\"MW20\""));
    ASSERT_TRUE(write) << write.Message();
    machine.Answer(WrittenMessage{write->id, {}, {}, "MW20 is not written: service may not"});

    const std::string said = writes.WaitForEnd();
    EXPECT_THAT(said, StartsWith("ended with status")); // not 0
    EXPECT_THAT(said, HasSubstr("plcwatch: MW20 is not written: service may not\n"));
}

TEST_F(PlcwatchFarAway, SaysThatThereIsNoSuchMachine)
{
    const std::string said =
        Run({"--machine", At("press8"), "--read", "MW20", "--for", "3s"}, standardError)
            .WaitForEnd();

    EXPECT_THAT(said, HasSubstr("no machine of this name has been seen"));
}

TEST_F(PlcwatchFarAway, SaysHowManyMessagesWereLost)
{
    const std::string list = broker.File("a.plc");
    ASSERT_TRUE(base::ReplaceFile(list, "MW20/D\n"));
    Child watches = Run({list, "--machine", At("press7"), "--plain"}, standardError);
    ASSERT_TRUE(machine.WaitForCount("watch", 1));
    ASSERT_TRUE(machine.WaitForTurns(40)); // messages in their sequence

    machine.LoseNext();

    EXPECT_THAT(watches.WaitForLine("lost"), HasSubstr("messages lost on the way so far: 1"));
}

TEST_F(PlcwatchFarAway, ListsTheMachinesOfAPlant)
{
    EXPECT_EQ(Run({"--machines", Plant(broker.Port())}).WaitForEnd(), "press7\trunning\n");
    EXPECT_EQ(
        Run({"--machines", Plant(broker.Port()), "--json"}).WaitForEnd(),
        "{\"machine\": \"press7\", \"link\": \"running\", \"reason\": \"\", "
        "\"version\": \"1.2.3\", \"listing\": false, \"writable\": []}\n");
}

TEST_F(PlcwatchFarAway, ListsAMachineThatIsSilentAsLost)
{
    machine.Silence(true);

    EXPECT_EQ(
        Run({"--machines", Plant(broker.Port())}).WaitForEnd(),
        "press7\tlost: the broker is there, and the machine says nothing\n");
}

TEST_F(PlcwatchFarAway, ListsAMachineWhoseProgramIsGoneWithWhatItHasLeftBehind)
{
    machine.Silence(true);
    machine.TellState({LinkStatus::Lost, "its program is gone"});

    EXPECT_EQ(
        Run({"--machines", Plant(broker.Port())}).WaitForEnd(),
        "press7\tlost: its program is gone\n");
}

TEST_F(PlcwatchFarAway, SaysWhyAPlantCannotBeListed)
{
    broker.Stop();

    const std::string said =
        Run({"--machines", Plant(broker.Port()), "--for", "1s"}, standardError).WaitForEnd();

    EXPECT_THAT(said, StartsWith("ended with status 1024")); // exit status 4
    EXPECT_THAT(said, HasSubstr("plcwatch: the broker does not answer (lost: "));
}

} // namespace
