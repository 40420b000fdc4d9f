#include "broker.h"
#include "broker_access.h"
#include "connectionevents.h"
#include "file.h"
#include "nameserver.h"
#include "proxy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <optional>

namespace plcremote {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* ownState = "plc/hall1/press7/state";

struct ConnectionTest : testing::Test
{
    void Connect(const ConnectionOrder& order)
    {
        connection.emplace(order);
        connection->Start(events);
    }

    /// Press7, as it is right.
    ConnectionOrder Order() const
    {
        return {broker.Address("press7", "press7"), broker.Access("press7"), {ownState}, {}};
    }

    static void SetPassword(const std::string& file, const std::string& password)
    {
        EXPECT_TRUE(base::ReplaceFile(file, password + '\n'));
    }

    /// What a witness hears of a topic that is retained.
    std::string Retained(const std::string& topic) const
    {
        auto command = broker.Login("mosquitto_sub", "service");
        command.insert(command.end(), {"-t", topic, "-C", "1", "-W", "10"});
        return Child(command).WaitForEnd();
    }

    Broker broker{{"press7", "lift", "service"}};
    RecordedConnection events;
    std::optional<Connection> connection; ///< After what it tells to.
};

TEST_F(ConnectionTest, PublishesAndHearsWhatItHasSubscribed)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1)) << events.WaitForReason("?");

    EXPECT_TRUE(connection->Publish(ownState, "hello", true));

    EXPECT_TRUE(events.WaitForMessage(ownState, "hello"));
    EXPECT_EQ(Retained(ownState), "hello\n");
}

TEST_F(ConnectionTest, TakesTurnsWithAConnectionAndWithout)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1));
    EXPECT_TRUE(events.WaitForTurns(3));

    broker.Stop();

    EXPECT_THAT(events.WaitForReason("ended the connection"), StartsWith("lost: "));
    EXPECT_TRUE(events.WaitForTurns(3));
}

TEST_F(ConnectionTest, SendsNothingWithoutAConnectionNorLater)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1));
    broker.Stop();
    events.WaitForReason("ended the connection");

    EXPECT_FALSE(connection->Publish(ownState, "late"));
    broker.Start();
    ASSERT_TRUE(events.WaitForConnections(2));

    EXPECT_TRUE(connection->Publish(ownState, "now"));
    EXPECT_TRUE(events.WaitForMessage(ownState, "now"));
    EXPECT_THAT(events.Messages(), SizeIs(1));
}

TEST_F(ConnectionTest, ComesBackAfterTheBroker)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1));

    broker.Stop();
    broker.Start();

    EXPECT_TRUE(events.WaitForConnections(2));
}

TEST_F(ConnectionTest, ComesBackAfterACut)
{
    Proxy proxy(broker.Port());
    ConnectionOrder order = Order();
    order.address.port = static_cast<std::uint16_t>(std::stoi(proxy.Port()));
    Connect(order);
    ASSERT_TRUE(events.WaitForConnections(1));

    proxy.Cut();

    EXPECT_TRUE(events.WaitForConnections(2));
}

TEST_F(ConnectionTest, LeavesAWillWhenItBreaksAndNoneWhenItEnds)
{
    Proxy proxy(broker.Port());
    ConnectionOrder order = Order();
    order.will = LastWill{ownState, "gone"};
    order.address.port = static_cast<std::uint16_t>(std::stoi(proxy.Port()));
    Connect(order);
    ASSERT_TRUE(events.WaitForConnections(1));
    proxy.Cut();
    EXPECT_TRUE(events.WaitForMessage(ownState, "gone"));

    EXPECT_TRUE(connection->Publish(ownState, "here", true));
    EXPECT_TRUE(events.WaitForMessage(ownState, "here"));
    connection.reset();

    EXPECT_EQ(Retained(ownState), "here\n");
}

TEST_F(ConnectionTest, EndsWhenTheBrokerHasAllThatItWasHanded)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1));

    constexpr std::size_t moreThanTheSystemTakesAtOnce = 7'000'000;
    EXPECT_TRUE(
        connection->Publish(ownState, std::string(moreThanTheSystemTakesAtOnce, 'x'), true));
    connection.reset();

    EXPECT_EQ(Retained(ownState).size(), moreThanTheSystemTakesAtOnce + 1) << "with a line end";
}

TEST_F(ConnectionTest, SaysThatThePasswordIsWrongAndTakesTheRightOneFromItsFile)
{
    const std::string right = base::ReadFile(broker.File("press7.password")).operator*();
    SetPassword(broker.File("press7.password"), "wrong");
    Connect(Order());
    EXPECT_THAT(
        events.WaitForReason("\"press7\""), StartsWith("refused: the broker does not accept"));

    EXPECT_TRUE(base::ReplaceFile(broker.File("press7.password"), right));

    EXPECT_TRUE(events.WaitForConnections(1));
}

TEST_F(ConnectionTest, SaysTheSameReasonOnce)
{
    SetPassword(broker.File("press7.password"), "wrong");
    Connect(Order());
    events.WaitForReason("\"press7\"");

    constexpr int turnsOfSomeAttempts = 60;
    EXPECT_TRUE(events.WaitForTurns(turnsOfSomeAttempts));

    EXPECT_THAT(events.Reasons(), SizeIs(1));
}

TEST_F(ConnectionTest, TrustsNobodyOfAnotherAuthority)
{
    const Broker other{{"press7"}};
    ConnectionOrder order = Order();
    order.access.authorities = other.File("ca.crt");
    Connect(order);

    EXPECT_THAT(
        events.WaitForReason("certificate"),
        StartsWith("refused: the broker's certificate is not trusted: "));
}

TEST_F(ConnectionTest, TrustsNoCertificateOfAnotherName)
{
    Broker other{{"press7"}, {"--host", "broker.example"}};
    Connect({other.Address("press7", "press7"), other.Access("press7"), {ownState}, {}});

    EXPECT_THAT(
        events.WaitForReason("certificate"),
        HasSubstr("refused: the broker's certificate is not trusted: it is not of \"127.0.0.1\""));
}

TEST_F(ConnectionTest, TrustsNoCertificateThatHasRunOut)
{
    Broker other{{"press7"}, {"--days", "-1"}};
    Connect({other.Address("press7", "press7"), other.Access("press7"), {ownState}, {}});

    EXPECT_THAT(events.WaitForReason("certificate"), HasSubstr("expired"));
}

TEST_F(ConnectionTest, TrustsNoCertificateThatIsNotValidYetAndSaysWhatToLookAtUntilThereIsAnother)
{
    const std::string valid = base::ReadFile(broker.File("broker.crt")).operator*();
    broker.PostdateCertificate();
    Connect(Order());

    EXPECT_EQ(
        events.WaitForReason("certificate"),
        "refused: the broker's certificate is not trusted: certificate is not yet valid (is the "
        "clock of this machine right?)");

    EXPECT_TRUE(base::ReplaceFile(broker.File("broker.crt"), valid));
    broker.Process().Signal(SIGHUP);

    EXPECT_TRUE(events.WaitForConnections(1));
}

TEST_F(ConnectionTest, SaysThatItMayNotHearWhatItSubscribes)
{
    broker.DenySubscriptions("press7");
    Connect(Order());

    EXPECT_EQ(
        events.WaitForReason("hear"),
        "refused: the broker does not let us hear \"plc/hall1/press7/state\"");
    EXPECT_FALSE(connection->Publish(ownState, "unheard"));
}

TEST_F(ConnectionTest, BlamesNoCertificateForABrokerThatDoesNotEncrypt)
{
    broker.StopEncrypting();
    Connect(Order());

    EXPECT_EQ(events.WaitForReason("reached"), "lost: the broker cannot be reached");
}

TEST_F(ConnectionTest, SaysWhichCertificatesCannotBeRead)
{
    ConnectionOrder order = Order();
    order.access.authorities = "/nowhere/ca.crt";
    Connect(order);

    EXPECT_THAT(
        events.WaitForReason("/nowhere"), HasSubstr("refused: cannot read the certificates"));
}

TEST_F(ConnectionTest, ReadsNoPasswordThatOthersCanRead)
{
    std::filesystem::permissions(
        broker.File("press7.password"),
        std::filesystem::perms::group_read,
        std::filesystem::perm_options::add);
    Connect(Order());

    EXPECT_THAT(events.WaitForReason("password file"), HasSubstr("others can read"));
}

TEST_F(ConnectionTest, NamesAPortWhereNobodyListens)
{
    broker.Stop();
    Connect(Order());

    EXPECT_THAT(events.WaitForReason("refused"), StartsWith("lost: "));
}

TEST_F(ConnectionTest, EndsAtOnceWithABrokerThatSwallowsEverything)
{
    Proxy proxy(broker.Port());
    proxy.Swallow();
    ConnectionOrder order = Order();
    order.address.port = static_cast<std::uint16_t>(std::stoi(proxy.Port()));
    Connect(order);

    EXPECT_TRUE(events.WaitForTurns(3));
    connection.reset();

    EXPECT_THAT(events.Messages(), SizeIs(0));
}

TEST_F(ConnectionTest, EndsAlthoughNobodyTellsItsLibraryWhereTheBrokerIs)
{
    std::future<void> end; // Before what it may wait for.
    const SilentNameServer silent;
    ConnectionOrder order = Order();
    order.address.host = "localhost";
    Connect(order);
    ASSERT_TRUE(SilentNameServer::WaitForQuestion());

    end = std::async(std::launch::async, [this] { connection.reset(); });

    constexpr std::chrono::seconds generous{30};
    EXPECT_EQ(end.wait_for(generous), std::future_status::ready);
}

TEST_F(ConnectionTest, OfAMachineCannotSpeakForAnother)
{
    Connect(Order());
    ASSERT_TRUE(events.WaitForConnections(1));

    connection->Publish("plc/hall1/lift/state", "forged", true);
    connection->Publish(ownState, "true", true);

    ASSERT_TRUE(events.WaitForMessage(ownState, "true"));
    EXPECT_EQ(Retained("plc/hall1/+/state"), "true\n");
}

TEST_F(ConnectionTest, OfAViewerCannotSpeakForAnotherViewer)
{
    RecordedConnection machineEvents;
    ConnectionOrder machineOrder = Order();
    machineOrder.topics = {"plc/hall1/press7/write/+/+"};
    Connection machine(machineOrder);
    machine.Start(machineEvents);
    ASSERT_TRUE(machineEvents.WaitForConnections(1));
    Connect({broker.Address("service", "press7"), broker.Access("service"), {}, {}});
    ASSERT_TRUE(events.WaitForConnections(1));

    connection->Publish("plc/hall1/press7/write/lift/w1", "forged");
    connection->Publish("plc/hall1/press7/write/service/w1", "own");

    ASSERT_TRUE(machineEvents.WaitForMessage("plc/hall1/press7/write/service/w1", "own"));
    EXPECT_THAT(machineEvents.Messages(), SizeIs(1));
}

TEST(OpenAccess, IsForThisMachineOnly)
{
    const auto error = [](const std::string& host, bool isEncrypted, bool mayBeOpen) {
        return OpenAccessError(
            {isEncrypted, "", host, 1883, "hall1", "press7"}, {"", "", mayBeOpen});
    };
    EXPECT_EQ(error("localhost", false, false), "");
    EXPECT_EQ(error("127.0.0.2", false, false), "");
    EXPECT_EQ(error("::1", false, false), "");
    EXPECT_THAT(error("broker", false, false), HasSubstr("--insecure"));
    EXPECT_THAT(error("127.evil.example", false, false), HasSubstr("--insecure"));
    EXPECT_EQ(error("broker", false, true), "");
    EXPECT_EQ(error("broker", true, false), "");
}

} // namespace
} // namespace plcremote
