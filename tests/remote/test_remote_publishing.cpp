#include "modbusserver.h"
#include "plcwatch.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

// plcwatch publishes a machine, and another plcwatch watches it.

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr int standardError = 2;

class PlcwatchPublishes : public testing::Test
{
protected:
    /// plcwatch with the access of a user.
    Child Run(const std::string& user, const std::vector<std::string>& words, int output = 1) const
    {
        return Child(PlcwatchCommand(broker, user, words), output);
    }

    /// What plcwatch says on standard error while it publishes a lift.
    Child Publish(const std::vector<std::string>& words = {}) const
    {
        const std::string list = SAMPLES "/lift/lift.plc";
        std::vector<std::string> command{
            list, "--machine", "soft:lift", "--publish", At("lift", "lift")};
        command.insert(command.end(), words.begin(), words.end());
        return Run("lift", command, standardError);
    }

    std::string At(const std::string& user, const std::string& machine) const
    {
        return "mqtts://" + user + "@127.0.0.1:" + broker.Port() + "/hall1/" + machine;
    }

    TempDir dir;
    Broker broker{{"lift", "oven", "service"}};
};

TEST_F(PlcwatchPublishes, AMachineThatAnotherPlcwatchReadsAndWrites)
{
    Child machine = Publish({"--allow-write", dir.Write("allowed", "service MW100\n")});
    ASSERT_NE(machine.WaitForLine("published on the broker as hall1/lift"), "");

    const std::string far = At("service", "lift");
    EXPECT_EQ(Run("service", {"--machine", far, "--read", "E2.4"}).WaitForEnd(), "1\n");
    EXPECT_EQ(Run("service", {"--machine", far, "--write", "MW100=17"}).WaitForEnd(), "");
    EXPECT_EQ(Run("service", {"--machine", far, "--read", "MW100"}).WaitForEnd(), "17\n");

    EXPECT_THAT(
        machine.WaitForLine("write from"),
        MatchesRegex("plcwatch: [0-9T:.+-]+ write from service: MW100 0 -> 17 done"));
}

TEST_F(PlcwatchPublishes, ADeviceAndSaysThatItIsGone)
{
    ModbusServer device({"modbus_server.py", "tcp", "0"});
    const std::string map = dir.Write(
        "oven.map", "[range a]\noperands = MW0..MW98\ntable = holding\nstart = 0\nwrite = yes\n");
    Child machine =
        Run("oven",
            {dir.Write("oven.plc", "MW20/D\n"),
             "--machine",
             "modbus://127.0.0.1:" + device.Port() + "/1",
             "--map",
             map,
             "--publish",
             At("oven", "oven"),
             "--allow-write",
             dir.Write("allowed", "service MW20\n")},
            2);
    ASSERT_NE(machine.WaitForLine("published on the broker as hall1/oven"), "");

    const std::string far = At("service", "oven");
    EXPECT_EQ(Run("service", {"--machine", far, "--write", "MW20=17"}).WaitForEnd(), "");
    EXPECT_EQ(Run("service", {"--machine", far, "--read", "MW20"}).WaitForEnd(), "17\n");
    Child viewer = Run("service", {dir.File("oven.plc"), "--machine", far, "--plain"});
    ASSERT_NE(viewer.WaitForLine("running"), "");

    device.Process().Kill();

    EXPECT_THAT(viewer.WaitForLine("lost"), HasSubstr("lost: the device"));
}

TEST_F(PlcwatchPublishes, NothingThatIsAnothersAlready)
{
    Child machine = Publish();
    ASSERT_NE(machine.WaitForLine("published"), "");
    ASSERT_EQ(
        Run("service", {"--machine", At("service", "lift"), "--read", "E2.4"}).WaitForEnd(), "1\n");

    EXPECT_NE(Publish().WaitForLine("another program publishes hall1/lift already"), "");
}

TEST_F(PlcwatchPublishes, ThatItHasEndedWhenItIsInterrupted)
{
    Child machine = Publish();
    ASSERT_NE(machine.WaitForLine("published"), "");
    ASSERT_EQ(
        Run("service", {"--machine", At("service", "lift"), "--read", "E2.4"}).WaitForEnd(), "1\n");

    machine.Signal(SIGTERM);
    machine.WaitForEnd();

    auto command = broker.Login("mosquitto_sub", "service");
    command.insert(command.end(), {"-t", "plc/hall1/lift/state", "-C", "1"});
    EXPECT_THAT(Child(command).WaitForEnd(), HasSubstr("the machine's program has ended\""));
}

TEST_F(PlcwatchPublishes, NothingWithAWriteListThatHasFaults)
{
    const std::string list = dir.Write("allowed", "service\nservice MB512\n");

    Child machine = Publish({"--allow-write", list});

    EXPECT_THAT(machine.WaitForLine("allowed:1:"), HasSubstr("a line is a user"));
    EXPECT_THAT(machine.WaitForLine("allowed:2:"), HasSubstr("no such operand"));
}

} // namespace
