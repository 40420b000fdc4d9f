#include "farevents.h"
#include "file.h"
#include "mqtt_source.h"
#include "playedmachine.h"
#include "proxy.h"
#include "said.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using plclink::LinkState;
using plclink::LinkStatus;
using testing::HasSubstr;
using testing::SizeIs;

class MqttSourceTest : public testing::Test
{
protected:
    void Begin(const std::string& port)
    {
        plclink::MqttAddress address = broker.Address("service", "press7");
        address.port = static_cast<std::uint16_t>(std::stoi(port));
        source = std::make_unique<MqttSource>(
            address, broker.Access("service"), [this](const std::string& sentence) {
                said.Add(sentence);
            });
        source->Start(events);
    }

    void Begin() { Begin(broker.Port()); }

    void Watch(const std::vector<std::string>& names)
    {
        plclink::WatchList list;
        for (const std::string& name : names) {
            list.push_back(plc::ParseOperand(name).value());
        }
        source->Watch(std::make_shared<const plclink::WatchList>(list));
    }

    /// Watches MW20, which the machine has.
    void BeginWithAValue()
    {
        machine.TellState({LinkStatus::Running});
        machine.Set("MW20", 17);
        Begin();
        Watch({"MW20"});
        ASSERT_TRUE(events.WaitForValue("MW20", 17)) << events.State().reason;
    }

    /// Begins to write, and gives how that ends.
    std::future<std::string> Write(const std::string& operand, std::uint32_t value)
    {
        const auto end = std::make_shared<std::promise<std::string>>();
        source->Write(
            plc::ParseOperand(operand).value(), value, [end](const base::Result<void>& done) {
                end->set_value(done ? "done" : done.Message());
            });
        return end->get_future();
    }

    Broker broker{{"press7", "service"}};
    PlayedMachine machine{broker, broker.Port()};
    FarEvents events;
    Said said;
    std::unique_ptr<MqttSource> source; ///< Last: it tells the others.
};

TEST_F(MqttSourceTest, TellsTheMachinesValuesAsOldAsTheyAre)
{
    const auto longAgo = plclink::Clock::now() - 1h;
    machine.SetOld("MW20", 17, longAgo);
    machine.Set("MW22", 18);
    Begin();
    Watch({"MW22", "MW20"});

    ASSERT_TRUE(events.WaitForValue("MW20", 17));
    ASSERT_TRUE(events.WaitForValue("MW22", 18));

    EXPECT_LT(events.Taken(17), longAgo + 1min);
    EXPECT_GT(events.Taken(18), longAgo + 1min);
    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
}

TEST_F(MqttSourceTest, AsksForWhatIsWatchedAgainBeforeTheLeaseEndsAndTakesLeaveAtTheEnd)
{
    Begin();
    Watch({"MW20", "E0.0"});

    EXPECT_NE(machine.WaitFor("watch", R"("operands":["MW20","E0.0"])"), "");
    EXPECT_TRUE(machine.WaitForCount("watch", 2));
    source.reset();

    EXPECT_NE(machine.WaitFor("watch", R"("operands":[])"), "");
}

TEST_F(MqttSourceTest, AValueThatStandsStillStaysYoung)
{
    BeginWithAValue();
    const auto now = plclink::Clock::now();

    machine.Set("MW20", 17);

    EXPECT_TRUE(events.WaitFor([&] { return events.NewestTaken("MW20") >= now; }));
}

TEST_F(MqttSourceTest, WhatTheNetworkHasHeldBackIsAsOldAsItIs)
{
    machine.Set("MW20", 17);
    Proxy proxy(broker.Port());
    Begin(proxy.Port());
    Watch({"MW20"});
    ASSERT_TRUE(events.WaitForValue("MW20", 17));

    proxy.Hold();
    machine.Set("MW20", 18);
    constexpr int fiveSeconds = 100;
    ASSERT_TRUE(machine.WaitForTurns(fiveSeconds));
    const auto end = plclink::Clock::now();
    proxy.LetGo();

    ASSERT_TRUE(events.WaitForValue("MW20", 18));
    EXPECT_LT(events.Taken(18), end);
    EXPECT_TRUE(events.HasBeenLost());
    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
}

TEST_F(MqttSourceTest, CountsMessagesThatAreLost)
{
    BeginWithAValue();

    machine.LoseNext();

    EXPECT_TRUE(events.WaitFor([&] { return source->Losses().lost == 1; }));
}

TEST_F(MqttSourceTest, MarksAMachineThatIsSilentAlthoughTheBrokerIsThere)
{
    BeginWithAValue();

    machine.Silence(true);

    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Lost));
    EXPECT_THAT(events.State().reason, HasSubstr("the broker is there"));
    machine.Silence(false);
    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
}

TEST_F(MqttSourceTest, SaysWhatTheMachineSaysOfItsController)
{
    BeginWithAValue();

    machine.TellState({LinkStatus::Lost, "no answer within 300 ms"});

    EXPECT_TRUE(events.WaitFor([&] {
        return events.State() == LinkState{LinkStatus::Lost, "no answer within 300 ms"};
    }));
    machine.TellState({LinkStatus::Running});
    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
}

TEST_F(MqttSourceTest, SaysThatABrokerIsNotThereAndGoesOnWhenItIsBack)
{
    BeginWithAValue();

    broker.Stop();
    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Lost));
    EXPECT_THAT(Write("MW20", 18).get(), HasSubstr("MW20 is not written: "));
    broker.Start();

    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
    EXPECT_EQ(machine.Count("write"), 0U);
}

TEST_F(MqttSourceTest, SaysThatItsUserIsNotLetIn)
{
    ASSERT_TRUE(base::ReplaceFile(broker.File("service.password"), "wrong\n"));
    Begin();

    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Refused));
}

TEST_F(MqttSourceTest, WritesOnceAndSaysHowItEnded)
{
    BeginWithAValue();

    auto done = Write("MW20", 0x10012);
    const auto write = ReadWrite(machine.WaitFor("write", "\"MW20\""));
    ASSERT_TRUE(write) << write.Message();
    EXPECT_EQ(write->session, PlayedMachine::session);
    EXPECT_EQ(write->value, 0x12U);
    machine.Answer(WrittenMessage{write->id, 17, 18, ""});

    EXPECT_EQ(done.get(), "done");
    EXPECT_EQ(machine.Count("write"), 1U);
}

TEST_F(MqttSourceTest, SaysWhyTheMachineDoesNotWrite)
{
    BeginWithAValue();

    auto done = Write("MW20", 18);
    const auto write = ReadWrite(machine.WaitFor("write", "\"MW20\""));
    ASSERT_TRUE(write) << write.Message();
    machine.Answer(WrittenMessage{write->id, {}, {}, "MW20 is not written: service may not"});

    EXPECT_EQ(done.get(), "MW20 is not written: service may not");
}

TEST_F(MqttSourceTest, AWriteWithoutAnAnswerIsNotConfirmed)
{
    BeginWithAValue();

    auto done = Write("MW20", 18);
    EXPECT_NE(machine.WaitFor("write", "\"MW20\""), "");

    EXPECT_EQ(done.get(), "MW20 is not confirmed: the machine has not answered within 2 s");
    EXPECT_EQ(machine.Count("write"), 1U);
}

TEST_F(MqttSourceTest, AWriteEndsWithItsLink)
{
    BeginWithAValue();
    auto done = Write("MW20", 18);

    source.reset();

    EXPECT_EQ(done.get(), "MW20 is not confirmed: the link has ended");
}

TEST_F(MqttSourceTest, DropsWhatIsNoMessageAndSaysSoOnce)
{
    BeginWithAValue();

    machine.Send("values", "{");
    machine.Send("values", R"({"format":2})");
    machine.Send("state", "true");
    machine.Set("MW20", 18);

    EXPECT_TRUE(events.WaitForValue("MW20", 18));
    EXPECT_EQ(source->Losses().dropped, 3U);
    EXPECT_THAT(said.Lines(), SizeIs(2));
    EXPECT_THAT(said.Lines().front(), HasSubstr("a message \"values\" is dropped"));
}

TEST_F(MqttSourceTest, DropsValuesThatTheBrokerHasKept)
{
    ValuesMessage old{
        PlayedMachine::session,
        1'000'000,
        1h,
        true,
        {{plc::ParseOperand("MW20").value(), 666, ""}},
        {}};
    machine.Send("values", Text(old), true);

    BeginWithAValue();

    EXPECT_EQ(source->Losses().dropped, 1U);
    EXPECT_THAT(events.Values("MW20"), testing::Not(testing::Contains(666)));
}

TEST_F(MqttSourceTest, HasTheListingOfTheMachineAndNoneThatIsTooLarge)
{
    machine.Send("listing", "the listing", true);
    machine.TellState({LinkStatus::Running}, true);
    Begin();
    ASSERT_TRUE(events.WaitFor([&] { return source->IsIntroduced(); }));
    EXPECT_EQ(source->Listing(), "the listing");

    machine.Send("listing", std::string(longestListing + 1, 'x'), true);

    EXPECT_TRUE(events.WaitFor([&] { return source->Losses().dropped == 1; }));
    EXPECT_EQ(source->Listing(), "the listing");
}

TEST_F(MqttSourceTest, IsIntroducedByAMachineWithoutAListing)
{
    Begin();
    ASSERT_TRUE(events.WaitForStatus(LinkStatus::Running));
    EXPECT_FALSE(source->IsIntroduced());

    machine.TellState({LinkStatus::Running});

    EXPECT_TRUE(events.WaitFor([&] { return source->IsIntroduced(); }));
}

TEST_F(MqttSourceTest, KnowsWhatTheMachineTellsOfItself)
{
    machine.Set("MW20", 17);
    Begin();

    EXPECT_TRUE(events.WaitFor([&] {
        const auto told = source->Told();
        return told.size() == 1 && plc::OperandName(told.front()) == "MW20";
    }));
}

TEST_F(MqttSourceTest, TellsTheStepsThatAreWatchedUntilSomebodyTakesThem)
{
    BeginWithAValue();
    events.RefuseSteps(2);

    source->WatchSteps(plc::StepRange{1, 2});
    ASSERT_NE(machine.WaitFor("steps", ""), "");
    machine.Answer(StepStatesMessage{{1, 2}, {{true, 17}, {false, std::nullopt}}});

    EXPECT_TRUE(events.WaitFor([&] { return events.Steps().size() == 2; }));
    EXPECT_EQ(events.Steps().front(), (plc::StepState{true, 17}));
}

TEST_F(MqttSourceTest, SaysThatAnotherViewerHasTheSteps)
{
    BeginWithAValue();
    source->WatchSteps(plc::StepRange{1, 2});
    ASSERT_NE(machine.WaitFor("steps", ""), "");

    machine.Answer(RefusalMessage{RefusalMessage::Of::Steps, "lift has them"});

    EXPECT_EQ(said.WaitFor("lift"), "the machine does not tell its program states: lift has them");
}

TEST_F(MqttSourceTest, IsRefusedWhileTheMachineDoesNotTellWhatIsWatched)
{
    BeginWithAValue();

    machine.Answer(RefusalMessage{RefusalMessage::Of::Watch, "there are 32 viewers"});
    EXPECT_TRUE(events.WaitFor([&] {
        return events.State() == LinkState{LinkStatus::Refused, "there are 32 viewers"};
    }));
    machine.Answer(RefusalMessage{RefusalMessage::Of::Watch, ""});

    EXPECT_TRUE(events.WaitForStatus(LinkStatus::Running));
}

} // namespace
} // namespace plcremote
