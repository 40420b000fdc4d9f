#include "publication.h"
#include "remoteoperands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

struct PublicationTest : testing::Test
{
    /// The machine has read its operands so long ago.
    std::optional<ValuesMessage> Tick(milliseconds elapsed, milliseconds age = 0ms)
    {
        now += elapsed;
        for (auto& operand : watched) {
            if (operand.newest) {
                operand.newest->taken = now - age;
            }
        }
        return publication.Tick(watched, now);
    }

    void Set(std::size_t place, std::uint32_t value)
    {
        watched[place].newest = plclink::Reading{value, now};
    }

    Publication::Time now{1000h};
    std::vector<plclink::WatchedOperand> watched{
        {Operand("MW20"), plclink::Reading{17, now}}, {Operand("MW22"), plclink::Reading{4, now}}};
    Publication publication{"0123456789abcdef", now};
};

TEST_F(PublicationTest, BeginsWithAWholeMessage)
{
    const auto message = Tick(50ms);

    ASSERT_TRUE(message);
    EXPECT_TRUE(message->isWhole);
    EXPECT_EQ(message->sequence, 0U);
    EXPECT_EQ(message->running, 50ms);
    EXPECT_THAT(message->values, SizeIs(2));
    EXPECT_THAT(message->ages, IsEmpty());
}

TEST_F(PublicationTest, TellsAChangeAtTheNextTickAndNothingElse)
{
    Tick(100ms);
    Set(1, 5);

    const auto message = Tick(100ms);

    ASSERT_TRUE(message);
    EXPECT_FALSE(message->isWhole);
    EXPECT_EQ(message->sequence, 1U);
    ASSERT_THAT(message->values, SizeIs(1));
    EXPECT_EQ(message->values[0].operand, Operand("MW22"));
    EXPECT_EQ(message->values[0].value, 5U);
    EXPECT_FALSE(Tick(100ms));
}

TEST_F(PublicationTest, TellsNothingTwiceInOneTick)
{
    Tick(100ms);
    Set(1, 5);

    EXPECT_FALSE(Tick(99ms));
    EXPECT_TRUE(Tick(1ms));
}

TEST_F(PublicationTest, ShowsThatItLivesWhenNothingChanges)
{
    Tick(100ms);

    EXPECT_FALSE(Tick(100ms));
    EXPECT_FALSE(Tick(100ms));
    const auto message = Tick(100ms);

    ASSERT_TRUE(message);
    EXPECT_FALSE(message->isWhole);
    EXPECT_THAT(message->values, IsEmpty());
}

TEST_F(PublicationTest, TellsAllOnceASecond)
{
    Tick(100ms);
    int whole = 0;
    for (int tick = 0; tick < 50; ++tick) {
        Set(0, static_cast<std::uint32_t>(tick));
        const auto message = Tick(100ms);
        ASSERT_TRUE(message);
        whole += message->isWhole ? 1 : 0;
    }

    EXPECT_EQ(whole, 5);
}

TEST_F(PublicationTest, TellsAllWhenSomebodyHasJustCome)
{
    Tick(100ms);
    publication.TellAllNext();

    EXPECT_TRUE(Tick(100ms)->isWhole);
}

TEST_F(PublicationTest, TellsTheAgesOfWhatIsOldChangedOrNot)
{
    Tick(100ms);

    const auto message = Tick(300ms, 2300ms);

    ASSERT_TRUE(message);
    EXPECT_THAT(message->values, IsEmpty());
    ASSERT_THAT(message->ages, SizeIs(2));
    EXPECT_EQ(message->ages[0].age, 2300ms);
}

TEST_F(PublicationTest, TellsNoAgeOfWhatIsYoung)
{
    EXPECT_THAT(Tick(100ms, youngAge - 1ms)->ages, IsEmpty());
    EXPECT_THAT(Tick(300ms, youngAge)->ages, SizeIs(2));
}

TEST_F(PublicationTest, TellsARefusalAndThatItHasEnded)
{
    Tick(100ms);
    watched[0].newest.reset();
    watched[0].refusal = "illegal data address";

    const auto refused = Tick(100ms);
    watched[0].refusal.clear();
    Set(0, 17);
    const auto told = Tick(100ms);

    ASSERT_TRUE(refused && told);
    ASSERT_THAT(refused->values, SizeIs(1));
    EXPECT_EQ(refused->values[0].refusal, "illegal data address");
    ASSERT_THAT(told->values, SizeIs(1));
    EXPECT_EQ(told->values[0].value, 17U);
}

TEST_F(PublicationTest, SaysNothingOfWhatIsNotKnownYet)
{
    watched.push_back({Operand("MW24")});

    EXPECT_THAT(Tick(100ms)->values, SizeIs(2));
}

} // namespace
} // namespace plcremote
