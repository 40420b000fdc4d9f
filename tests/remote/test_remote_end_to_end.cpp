#include "child.h"
#include "mqtt_source.h"
#include "plcwatch.h"
#include "proxy.h"
#include "sourceevents.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <future>
#include <memory>
#include <string>
#include <vector>

// A machine's program that crashes, is stopped or unplugged, and what its viewers say.

namespace {

using plclink::LinkStatus;
using testing::HasSubstr;

class EndToEnd : public testing::Test
{
protected:
    EndToEnd()
    {
        StartMachine();
        source.Start(events);
        source.Watch(std::make_shared<const plclink::WatchList>(
            plclink::WatchList{plc::ParseOperand("MW100").value()}));
        EXPECT_TRUE(events.WaitForValue("MW100", 0)) << events.State().reason;
        viewer = std::make_unique<Child>(PlcwatchCommand(
            broker, "service", {list, "--machine", At("service", broker.Port()), "--json"}));
        EXPECT_TRUE(IsBack());
    }

    /// A lift whose list stands still, with the writes on standard error.
    void StartMachine()
    {
        const auto command = PlcwatchCommand(
            broker,
            "lift",
            {list,
             "--plain",
             "--machine",
             "soft:lift",
             "--publish",
             At("lift", machinesWay.Port()),
             "--allow-write",
             dir.Write("allowed", "service MW100\n")});
        constexpr int standardError = 2;
        machine = std::make_unique<Child>(command, standardError);
    }

    static std::string At(const std::string& user, const std::string& port)
    {
        return "mqtts://" + user + "@127.0.0.1:" + port + "/hall1/lift";
    }

    plclink::MqttAddress FarAddress() const
    {
        plclink::MqttAddress address = broker.Address("service", "lift");
        address.port = static_cast<std::uint16_t>(std::stoi(viewersWay.Port()));
        return address;
    }

    /// @return whether both viewers mark the machine with this reason.
    bool IsLost(const std::string& reason)
    {
        return !viewer->WaitForLine(R"("link": "lost", "reason": ")" + reason + '"').empty() &&
               events.WaitFor([&] {
                   return events.HasBeen({LinkStatus::Lost, reason});
               });
    }

    /// @return whether both viewers have it again.
    bool IsBack()
    {
        return !viewer->WaitForLine(R"("link": "running")").empty() &&
               events.WaitForStatus(LinkStatus::Running);
    }

    std::future<std::string> Write(std::uint32_t value)
    {
        const auto end = std::make_shared<std::promise<std::string>>();
        source.Write(
            plc::ParseOperand("MW100").value(), value, [end](const base::Result<void>& done) {
                end->set_value(done ? "done" : done.Message());
            });
        return end->get_future();
    }

    static constexpr const char* silent = "the broker is there, and the machine says nothing";

    TempDir dir;
    const std::string list = dir.Write("list.plc", "MW100/D\n");
    Broker broker{{"lift", "service"}};
    Proxy machinesWay{broker.Port()};
    Proxy viewersWay{broker.Port()};
    std::unique_ptr<Child> machine;
    std::unique_ptr<Child> viewer;
    RecordedEvents events;
    plcremote::MqttSource source{FarAddress(), broker.Access("service"), [](const std::string&) {}};
};

TEST_F(EndToEnd, AMachineWhoseProgramHasCrashedIsMarkedByItsLastWillAndBackWhenItIsStartedAgain)
{
    machine->Kill();

    EXPECT_TRUE(IsLost("the machine's program has ended or its network is gone"));
    StartMachine();
    EXPECT_TRUE(IsBack());
}

TEST_F(EndToEnd, AMachineWhoseProgramIsStoppedIsMarkedBeforeTheBrokerMissesItAndBackWhenItGoesOn)
{
    machine->Signal(SIGSTOP);

    EXPECT_TRUE(IsLost(silent));
    machine->Signal(SIGCONT);
    EXPECT_TRUE(IsBack());
}

TEST_F(EndToEnd, AMachineThatIsUnpluggedIsMarkedBeforeTheBrokerMissesItAndBackWhenItIsPluggedIn)
{
    machinesWay.Swallow();

    EXPECT_TRUE(IsLost(silent));
    machinesWay.Swallow();
    EXPECT_TRUE(IsBack());
}

TEST_F(EndToEnd, AMachineWhoseProgramIsInterruptedSaysSoLast)
{
    machine->Signal(SIGTERM);

    EXPECT_TRUE(IsLost("the machine's program has ended"));
}

TEST_F(EndToEnd, AWriteThatIsHeldBackIsNotConfirmedAndNeverDone)
{
    viewersWay.HoldToServer();
    EXPECT_EQ(Write(17).get(), "MW100 is not confirmed: the machine has not answered within 2 s");
    viewersWay.LetGoToServer();

    EXPECT_THAT(
        machine->WaitForLine("write from"),
        HasSubstr("write from service: MW100 0 -> 17 refused, it is 0: it came too late"));
    events.ForgetValues();
    EXPECT_TRUE(events.WaitForValue("MW100", 0));
    EXPECT_THAT(events.Values("MW100"), testing::Not(testing::Contains(17)));
}

} // namespace
