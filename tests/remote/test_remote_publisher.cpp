#include "assembler.h"
#include "broker.h"
#include "connectionevents.h"
#include "machine_link.h"
#include "messages.h"
#include "mqtt_source.h"
#include "publisher.h"
#include "said.h"
#include "soft_plc.h"
#include "sourceevents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <optional>
#include <set>
#include <utility>

// A soft PLC that is published, and who watches it.

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::MatchesRegex;

/// A soft PLC with a publisher.
struct Machine
{
    Machine(const Broker& broker, const std::string& listing = "")
        : publisher(
              link,
              {broker.Address("press7", "press7"),
               broker.Access("press7"),
               ParseWriteList("service MW100-MW110", "list").operator*(),
               listing,
               {*plc::ParseOperand("MW100")},
               "1.0"},
              [this](const std::string& line) { said.Add(line); },
              [this](const std::string& line) { ended.Add(line); })
    {
        publisher.Start();
        link.Start();
    }

    static std::unique_ptr<plclink::Source> Plc()
    {
        plc::Assembly assembly = plc::AssembleFile(SAMPLES "/lift/lift.il");
        return std::make_unique<plclink::SoftPlc>(
            std::move(assembly.program.value()), samples::FindSampleMachine("lift"), 10ms);
    }

    Said said;
    Said ended;
    plclink::MachineLink link{Plc()};
    Publisher publisher;
};

/// A viewer.
struct Far
{
    explicit Far(const Broker& broker, const std::string& user = "service")
        : source(
              broker.Address(user, "press7"), broker.Access(user), [this](const std::string& line) {
                  said.Add(line);
              })
    {
        source.Start(events);
    }

    void Watch(const std::vector<std::string>& names)
    {
        auto list = std::make_shared<plclink::WatchList>();
        for (const std::string& name : names) {
            list->push_back(plc::ParseOperand(name).value());
        }
        source.Watch(list);
    }

    /// What comes of a write.
    std::string Write(const std::string& name, std::uint32_t value)
    {
        std::promise<std::string> end;
        source.Write(plc::ParseOperand(name).value(), value, [&end](const auto& done) {
            end.set_value(done ? "done" : done.Message());
        });
        return end.get_future().get();
    }

    Said said;
    RecordedEvents events;
    MqttSource source;
};

/// Somebody else on the broker, who hears these topics.
struct Witness
{
    Witness(const Broker& broker, std::vector<std::string> topics)
        : connection(
              {broker.Address("service", "press7"),
               broker.Access("service"),
               std::move(topics),
               {}})
    {
        connection.Start(events);
    }

    RecordedConnection events;
    Connection connection;
};

struct PublisherTest : testing::Test
{
    Broker broker{{"press7", "service", "guest"}};
};

TEST_F(PublisherTest, ShowsWhatItsMachineHasToEverybody)
{
    Machine machine(broker);
    Far service(broker);
    Far guest(broker, "guest");
    service.Watch({"MW0", "MW100"});
    guest.Watch({"E2.4"});

    EXPECT_TRUE(service.events.WaitForValue("MW100", 0));
    EXPECT_TRUE(service.events.WaitFor([&] { return service.events.Value("MW0").has_value(); }));
    EXPECT_TRUE(guest.events.WaitForValue("E2.4", 1));
    EXPECT_TRUE(service.events.WaitForStatus(plclink::LinkStatus::Running));
}

TEST_F(PublisherTest, WritesWhatTheListAllowsAndSaysSo)
{
    Machine machine(broker);
    Far service(broker);
    service.Watch({"MW100"});
    ASSERT_TRUE(service.events.WaitForValue("MW100", 0));

    EXPECT_EQ(service.Write("MW100", 17), "done");

    EXPECT_TRUE(service.events.WaitForValue("MW100", 17));
    EXPECT_THAT(
        machine.said.WaitFor("write from"),
        MatchesRegex("[0-9T:.+-]+ write from service: MW100 0 -> 17 done"));
}

TEST_F(PublisherTest, WritesNothingElseAndSaysSo)
{
    Machine machine(broker);
    Far service(broker);
    Far guest(broker, "guest");
    service.Watch({"MW100"});
    guest.Watch({"MW100"});
    ASSERT_TRUE(service.events.WaitForValue("MW100", 0));
    ASSERT_TRUE(guest.events.WaitForValue("MW100", 0));

    EXPECT_THAT(service.Write("MW120", 17), HasSubstr("does not let service write"));
    EXPECT_THAT(guest.Write("MW100", 17), HasSubstr("does not let guest write"));

    EXPECT_THAT(machine.said.WaitFor("MW120"), HasSubstr("refused"));
    EXPECT_THAT(machine.said.WaitFor("guest"), HasSubstr("MW100 0 -> 17 refused, it is 0"));
    EXPECT_EQ(service.events.Value("MW100"), 0U);
}

TEST_F(PublisherTest, TellsItsValuesWithoutLettingTheBrokerKeepThem)
{
    Witness witness(broker, {"plc/hall1/press7/values"});
    ASSERT_TRUE(witness.events.WaitForConnections(1));
    {
        Machine machine(broker);
        ASSERT_TRUE(witness.events.WaitForMessages(10));
    }

    std::optional<std::uint64_t> last;
    for (const auto& message : witness.events.Messages()) {
        const auto values = ReadValues(message.payload);
        ASSERT_TRUE(values) << message.payload;
        EXPECT_FALSE(message.isRetained);
        EXPECT_TRUE(!last || values->sequence == *last + 1);
        last = values->sequence;
    }
    // What is kept comes in the order of the subscriptions.
    Witness late(broker, {"plc/hall1/press7/values", "plc/hall1/press7/state"});
    ASSERT_TRUE(late.events.WaitForMessages(1));
    EXPECT_EQ(late.events.Messages().front().topic, "plc/hall1/press7/state");
}

TEST_F(PublisherTest, SaysThatItHasEnded)
{
    Far service(broker);
    service.Watch({"MW100"});
    {
        Machine machine(broker);
        ASSERT_TRUE(service.events.WaitForValue("MW100", 0));
    }

    EXPECT_TRUE(service.events.WaitFor(
        [&] { return service.events.State().status == plclink::LinkStatus::Lost; }));
    EXPECT_THAT(service.events.State().reason, HasSubstr("has ended"));
}

TEST_F(PublisherTest, OfASecondMachineOfTheSameNameEndsWithASentence)
{
    Machine first(broker);
    Far service(broker);
    service.Watch({"MW100"});
    ASSERT_TRUE(service.events.WaitForValue("MW100", 0));
    Witness witness(broker, {"plc/hall1/press7/values"});
    ASSERT_TRUE(witness.events.WaitForMessages(1));

    Machine second(broker);

    EXPECT_THAT(
        second.ended.WaitFor("another"),
        HasSubstr("another program publishes hall1/press7 already"));
    std::set<std::string> sessions;
    for (const auto& message : witness.events.Messages()) {
        sessions.insert(ReadValues(message.payload)->session);
    }
    EXPECT_EQ(sessions.size(), 1U);
    service.events.ForgetValues();
    EXPECT_TRUE(service.events.WaitForValue("MW100", 0));
}

TEST_F(PublisherTest, ComesBackWithTheBroker)
{
    Machine machine(broker);
    Far service(broker);
    service.Watch({"MW100"});
    ASSERT_TRUE(service.events.WaitForValue("MW100", 0));

    broker.Stop();
    ASSERT_TRUE(service.events.WaitForStatus(plclink::LinkStatus::Lost));
    broker.Start();

    EXPECT_TRUE(service.events.WaitForStatus(plclink::LinkStatus::Running));
    service.events.ForgetValues();
    EXPECT_TRUE(service.events.WaitForValue("MW100", 0));
    EXPECT_EQ(service.Write("MW100", 3), "done");
}

TEST_F(PublisherTest, GivesTheStepsToTheViewerWhoAskedLast)
{
    Machine machine(broker);
    Far service(broker);
    Far guest(broker, "guest");
    service.Watch({"MW100"});
    ASSERT_TRUE(service.events.WaitForValue("MW100", 0));

    service.source.WatchSteps(plc::StepRange{0, 3});
    EXPECT_TRUE(service.events.WaitFor([&] { return service.events.StepCount() > 0; }));
    EXPECT_EQ(machine.publisher.StepsUser(), "service");
    guest.source.WatchSteps(plc::StepRange{1, 4});

    EXPECT_TRUE(guest.events.WaitFor([&] { return guest.events.StepCount() > 0; }));
    EXPECT_THAT(service.said.WaitFor("states"), HasSubstr("they go to guest now"));
    EXPECT_EQ(machine.publisher.StepsUser(), "guest");
}

TEST_F(PublisherTest, LosesTheStepsToWhoLooksAtTheMachineItself)
{
    struct Local : plclink::Client
    {
    } local;

    Machine machine(broker);
    Far service(broker);
    service.source.WatchSteps(plc::StepRange{0, 3});
    EXPECT_TRUE(service.events.WaitFor([&] { return service.events.StepCount() > 0; }));

    machine.link.Join(local);
    machine.link.WatchSteps(local, plc::StepRange{0, 3});

    EXPECT_THAT(service.said.WaitFor("states"), HasSubstr("at the machine"));
    EXPECT_EQ(machine.publisher.StepsUser(), "");
    machine.link.Leave(local);
}

TEST_F(PublisherTest, DropsWhatIsNoMessageAndSaysItOnce)
{
    Machine machine(broker);
    Witness forger(broker, {});
    ASSERT_TRUE(forger.events.WaitForConnections(1));
    ASSERT_NE(machine.said.WaitFor("published on the broker"), "");

    forger.connection.Publish("plc/hall1/press7/watch/service/w1", "garbage");
    forger.connection.Publish("plc/hall1/press7/watch/service/w1", "garbage again");
    forger.connection.Publish("plc/hall1/press7/write/service/w1", R"({"format":2})");

    EXPECT_THAT(machine.said.WaitFor("\"watch\""), HasSubstr("no JSON object"));
    EXPECT_THAT(machine.said.WaitFor("\"write\""), HasSubstr("another format version"));
    EXPECT_EQ(machine.said.Count("\"watch\""), 1U);
    Far service(broker);
    service.Watch({"MW100"});
    EXPECT_TRUE(service.events.WaitForValue("MW100", 0));
}

TEST_F(PublisherTest, DropsWhatIsTooMuchOfAFlood)
{
    Machine machine(broker);
    Witness flooder(broker, {});
    ASSERT_TRUE(flooder.events.WaitForConnections(1));
    ASSERT_NE(machine.said.WaitFor("published on the broker"), "");
    const std::string tooMany = "too many come at a time";

    for (int wave = 0; wave < 100 && machine.said.Count(tooMany) == 0; ++wave) {
        for (int i = 0; i < 1000; ++i) {
            flooder.connection.Publish("plc/hall1/press7/watch/service/w1", "garbage");
        }
        ASSERT_TRUE(flooder.events.WaitForTurns(1));
    }

    EXPECT_EQ(machine.said.Count(tooMany), 1U);
    Far guest(broker, "guest");
    guest.Watch({"MW100"});
    EXPECT_TRUE(guest.events.WaitForValue("MW100", 0));
}

TEST_F(PublisherTest, TellsAViewerThatItWasRefusedThatItIsServedNow)
{
    const std::string watch = "plc/hall1/press7/watch/service/w1";
    std::string tooMany;
    for (std::size_t i = 0; i < mostOperands; ++i) {
        tooMany +=
            (i == 0 ? "\"M" : ",\"M") + std::to_string(i / 8) + '.' + std::to_string(i % 8) + '"';
    }
    Machine machine(broker);
    Witness viewer(broker, {"plc/hall1/press7/answer/service/w1"});
    ASSERT_TRUE(viewer.events.WaitForConnections(1));
    ASSERT_NE(machine.said.WaitFor("published on the broker"), "");

    viewer.connection.Publish(watch, R"({"format":1,"operands":[)" + tooMany + "]}");
    EXPECT_TRUE(viewer.events.WaitForMessageWith("500 operands"));
    viewer.connection.Publish(watch, R"({"format":1,"operands":["MW0"]})");

    EXPECT_TRUE(viewer.events.WaitForMessageWith(R"("reason":"")"));
}

TEST_F(PublisherTest, PublishesTheListingOfItsProgram)
{
    Machine machine(broker, "listing of the lift");
    Far service(broker);

    EXPECT_TRUE(
        service.events.WaitFor([&] { return service.source.Listing() == "listing of the lift"; }));
}

TEST_F(PublisherTest, PublishesNoListingThatIsTooLarge)
{
    Machine machine(broker, std::string(longestListing + 1, 'x'));

    EXPECT_THAT(machine.said.WaitFor("8 MB"), HasSubstr("is not published"));
}

} // namespace
} // namespace plcremote
