#include "child.h"
#include "devicelink.h"
#include "modbusserver.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

// plcwatch with a device that others have written.

namespace {

using testing::HasSubstr;

class PlcwatchAtADevice : public testing::Test
{
protected:
    PlcwatchAtADevice()
        : m_server({"modbus_server.py", "tcp", "0"}), m_address(TcpAddress(m_server.Port()))
    {
        m_folder.Write(
            "device.map",
            "[range a]\noperands = MW0..MW98\ntable = holding\nstart = 0\nwrite = yes\n");
    }

    /// What plcwatch says on one of its outputs.
    std::string Plcwatch(const std::vector<std::string>& words, int output = 1)
    {
        std::istringstream run(PLCWATCH);
        std::vector<std::string> command;
        for (std::string word; run >> word;) {
            command.push_back(word);
        }
        command.insert(
            command.end(), {"--machine", m_address, "--map", m_folder.File("device.map")});
        command.insert(command.end(), words.begin(), words.end());
        return Child(command, output).WaitForEnd();
    }

    TempDir m_folder;
    const ModbusServer m_server;
    const std::string m_address;
};

TEST_F(PlcwatchAtADevice, PrintsTheValuesOfAList)
{
    const std::string list = m_folder.Write("a.plc", "MW4/D\nMB7/H\nMD8/H\n");

    const std::string said = Plcwatch({list, "--once", "--plain"});

    EXPECT_THAT(said, HasSubstr("\tMW 4\t1029\n"));
    EXPECT_THAT(said, HasSubstr("\tMB 7\t07\n"));
    EXPECT_THAT(said, HasSubstr("\tMD 8\t08090A0B\n"));
}

TEST_F(PlcwatchAtADevice, WritesAValueAndReadsItBack)
{
    Plcwatch({"--write", "MW4=17"});

    EXPECT_EQ(Plcwatch({"--read", "MW4"}), "17\n");
}

TEST_F(PlcwatchAtADevice, TellsAllFaultsOfTheMap)
{
    m_folder.Write("device.map", "[range a]\noperands = MW0..MW511\ntable = x\nstart = 0\n");

    const std::string said = Plcwatch({"--read", "MW4"}, 2);

    EXPECT_THAT(said, HasSubstr("ended with status 256")); // 1, as waitpid() has it
    EXPECT_THAT(said, HasSubstr("device.map:2: "));
    EXPECT_THAT(said, HasSubstr("device.map:3: "));
}

} // namespace
