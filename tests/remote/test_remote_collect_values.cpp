#include "broker.h"
#include "connectionevents.h"
#include "messages.h"
#include "topics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace plcremote {
namespace {

constexpr const char* watching = R"("operands": ["MW20", "E0.3"])";

/// Python of the system, which has the packages of the system.
constexpr const char* python = "/usr/bin/python3";

struct CollectValuesTest : testing::Test
{
    CollectValuesTest()
    {
        machine.emplace(ConnectionOrder{
            broker.Address("press7", "press7"),
            broker.Access("press7"),
            {"plc/hall1/press7/watch/+/+"},
            {}});
        machine->Start(events);
        EXPECT_TRUE(events.WaitForConnections(1)) << events.WaitForReason("?");
        const std::string script = EXAMPLES "/collect_values.py";
        collector.emplace(std::vector<std::string>{
            python,
            script,
            "mqtts://service@127.0.0.1:" + broker.Port() + "/hall1/press7",
            "MW20",
            "E0.3",
            "--password-file",
            broker.File("service.password"),
            "--ca",
            broker.File("ca.crt"),
            "--file",
            broker.File("values.sqlite")});
    }

    void Tell(ValuesMessage message)
    {
        message.session = "0123456789abcdef";
        EXPECT_TRUE(machine->Publish("plc/hall1/press7/values", Text(message)));
    }

    /// The rows that an inquiry gives, once there are so many.
    std::string Rows(const std::string& inquiry, int count) const
    {
        return Child({python,
                      "-c",
                      "import sqlite3, sys, time\n"
                      "base = sqlite3.connect(sys.argv[1])\n"
                      "rows = []\n"
                      "limit = time.monotonic() + 30\n"
                      "while len(rows) < int(sys.argv[3]) and time.monotonic() < limit:\n"
                      "    rows = base.execute(sys.argv[2]).fetchall()\n"
                      "    time.sleep(0.02)\n"
                      "print(*rows, sep='; ')",
                      broker.File("values.sqlite"),
                      inquiry,
                      std::to_string(count)})
            .WaitForEnd();
    }

    const Broker broker{{"press7", "service"}};
    RecordedConnection events;
    std::optional<Connection> machine;
    std::optional<Child> collector;
};

TEST_F(CollectValuesTest, StoresEachValueThatChangesAndEachHole)
{
    ASSERT_TRUE(events.WaitForMessageWith(watching));
    const auto word = plc::ParseOperand("MW20").value();
    const auto bit = plc::ParseOperand("E0.3").value();
    const auto other = plc::ParseOperand("MW22").value();

    Tell({{}, 7, milliseconds(1000), true, {{word, 17, ""}, {bit, 1, ""}, {other, 9, ""}}, {}});
    Tell(
        {{},
         8,
         milliseconds(1300),
         true,
         {{word, 17, ""}, {bit, 0, ""}},
         {{bit, milliseconds(250)}}});
    Tell({{}, 11, milliseconds(1600), false, {{word, std::nullopt, "illegal data address"}}, {}});

    EXPECT_EQ(
        Rows("SELECT machine, sequence, running, operand, value, age FROM reading", 4),
        "('hall1/press7', 7, 1000, 'E0.3', 1, 0); ('hall1/press7', 7, 1000, 'MW20', 17, 0); "
        "('hall1/press7', 8, 1300, 'E0.3', 0, 250); ('hall1/press7', 11, 1600, 'MW20', None, 0)\n");
    EXPECT_EQ(Rows("SELECT first, last FROM hole", 1), "(9, 10)\n");
}

TEST_F(CollectValuesTest, IsGoneForTheMachineWhenItEnds)
{
    ASSERT_TRUE(events.WaitForMessageWith(watching));

    collector->Signal(SIGTERM);

    EXPECT_TRUE(events.WaitForMessageWith(R"("operands": [])"));
}

} // namespace
} // namespace plcremote
