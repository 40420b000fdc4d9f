#include "machine_link.h"
#include "scriptedsource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace plclink {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

plc::Operand OperandOf(const char* name)
{
    return plc::ParseOperand(name).value();
}

class RecordingWatcher : public Watcher
{
public:
    bool OnReading(const Reading& reading) override
    {
        if (takes) {
            heard.push_back(std::to_string(reading.value));
        }
        return takes;
    }

    void OnUnreadable(const std::string& reason) override { heard.push_back(reason); }

    std::vector<std::string> Take() { return std::exchange(heard, {}); }

    bool takes = true;
    std::vector<std::string> heard;
};

class RecordingClient : public Client
{
public:
    void OnState(const LinkState& state) override
    {
        heard.push_back(std::string(StatusText(state.status)) + state.reason);
    }

    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>&) override
    {
        heard.push_back(std::to_string(range.first) + '-' + std::to_string(range.last));
        return takes;
    }

    bool takes = true;
    std::vector<std::string> heard;
};

struct MachineLinkTest : testing::Test
{
    explicit MachineLinkTest(bool tellsEvery = false)
    {
        auto made = std::make_unique<ScriptedSource>(tellsEvery);
        source = made.get();
        link.emplace(std::move(made));
        link->Start();
    }

    void Turn(const std::vector<std::uint32_t>& values, std::chrono::milliseconds elapsed = 10ms)
    {
        now += elapsed;
        std::vector<PlacedReading> readings;
        for (const std::uint32_t value : values) {
            readings.push_back({readings.size(), {value, now}});
        }
        source->events->OnReadings(*source->list, readings);
    }

    std::vector<std::string> Watched() const
    {
        std::vector<std::string> names;
        for (const plc::Operand& operand : *source->list) {
            names.push_back(plc::OperandName(operand));
        }
        return names;
    }

    ScriptedSource* source = nullptr;
    RecordingWatcher first;
    RecordingWatcher second;
    Clock::time_point now;
    std::optional<MachineLink> link;
};

TEST_F(MachineLinkTest, AsksForTheUnionOfWhatIsWatchedOnce)
{
    RecordingWatcher third;
    link->Watch(first, OperandOf("MW20"));
    link->Watch(second, OperandOf("EB1"));
    link->Watch(third, OperandOf("MW20"));
    EXPECT_THAT(Watched(), ElementsAre("MW20", "EB1"));

    link->Unwatch(first);
    EXPECT_THAT(Watched(), ElementsAre("MW20", "EB1"));
    link->Unwatch(third);
    EXPECT_THAT(Watched(), ElementsAre("EB1"));
}

TEST_F(MachineLinkTest, KnowsAllThatIsWatchedAndCountsReadings)
{
    link->Watch(first, OperandOf("MW20"));
    link->Watch(second, OperandOf("EB1"));
    Turn({5});
    Turn({5});
    source->events->OnUnreadable(OperandOf("EB1"), "no such input");

    const std::vector<WatchedOperand> watched = link->Watched();

    ASSERT_EQ(watched.size(), 2U);
    EXPECT_EQ(watched[0].operand, OperandOf("MW20"));
    ASSERT_TRUE(watched[0].newest);
    EXPECT_EQ(watched[0].newest->value, 5U);
    EXPECT_EQ(watched[0].refusal, "");
    EXPECT_FALSE(watched[1].newest);
    EXPECT_EQ(watched[1].refusal, "no such input");
    EXPECT_EQ(link->ReadingCount(), 2U);
}

TEST_F(MachineLinkTest, TellsTheFirstValueEachChangeAndEachSecondThatThereIsNone)
{
    link->Watch(first, OperandOf("MW20"));
    Turn({5});
    Turn({5});
    EXPECT_THAT(first.Take(), ElementsAre("5"));

    Turn({6});
    EXPECT_THAT(first.Take(), ElementsAre("6"));

    Turn({6}, refreshTime - 1ms);
    EXPECT_THAT(first.Take(), IsEmpty());
    Turn({6}, 1ms);
    EXPECT_THAT(first.Take(), ElementsAre("6"));
}

TEST_F(MachineLinkTest, TellsWhoComesLaterTheNewestValueInTheNextTurn)
{
    link->Watch(first, OperandOf("MW20"));
    Turn({5});
    first.Take();

    link->Watch(second, OperandOf("MW20"));
    EXPECT_THAT(second.Take(), IsEmpty());
    Turn({});

    EXPECT_THAT(second.Take(), ElementsAre("5"));
    EXPECT_THAT(first.Take(), IsEmpty());
}

TEST_F(MachineLinkTest, KnowsTheAgeOfAValueThatDoesNotChange)
{
    link->Watch(first, OperandOf("MW20"));
    EXPECT_FALSE(link->Newest(OperandOf("MW20")));
    Turn({5});
    Turn({5});

    ASSERT_TRUE(link->Newest(OperandOf("MW20")));
    EXPECT_EQ(link->Newest(OperandOf("MW20"))->taken, now);
    EXPECT_FALSE(link->Newest(OperandOf("MW22")));
}

TEST_F(MachineLinkTest, OffersTheNewestValueAgainToWhoCouldNotTakeIt)
{
    link->Watch(first, OperandOf("MW20"));
    first.takes = false;
    Turn({5});
    Turn({6});
    first.takes = true;
    Turn({});
    Turn({});

    EXPECT_THAT(first.Take(), ElementsAre("6"));
}

TEST_F(MachineLinkTest, TellsNothingToWhoWatchesNoLonger)
{
    link->Watch(first, OperandOf("MW20"));
    link->Watch(second, OperandOf("MW20"));
    Turn({5});
    first.Take();

    link->Unwatch(first);
    link->Unwatch(first);
    Turn({6});

    EXPECT_THAT(first.Take(), IsEmpty());
    EXPECT_THAT(second.Take(), ElementsAre("5", "6"));
}

TEST_F(MachineLinkTest, ReadingsUnderAFormerListGoToTheirOperands)
{
    link->Watch(first, OperandOf("MW20"));
    link->Watch(second, OperandOf("EB1"));
    const auto former = source->list;
    link->Unwatch(first);

    source->events->OnReadings(*former, {{0, {5, now}}, {1, {6, now}}});

    EXPECT_THAT(first.Take(), IsEmpty());
    EXPECT_THAT(second.Take(), ElementsAre("6"));
}

TEST_F(MachineLinkTest, TellsEverybodyOnceWhatCannotBeReadAndItsValueWhenItCan)
{
    link->Watch(first, OperandOf("MW20"));
    source->events->OnUnreadable(OperandOf("MW20"), "refused");
    link->Watch(second, OperandOf("MW20"));
    Turn({});
    Turn({});
    EXPECT_THAT(first.Take(), ElementsAre("refused"));
    EXPECT_THAT(second.Take(), ElementsAre("refused"));

    Turn({5});
    EXPECT_THAT(first.Take(), ElementsAre("5"));
    EXPECT_THAT(second.Take(), ElementsAre("5"));
}

TEST_F(MachineLinkTest, TheMachineSaysWhatItCannotTell)
{
    const auto refused = link->Check(OperandOf("A0.0"));

    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.Message(), "no outputs here");
    EXPECT_TRUE(link->Check(OperandOf("MW20")));
}

TEST_F(MachineLinkTest, WritesReachTheMachineAndTheirEndTheWriter)
{
    bool done = false;
    link->Write(OperandOf("MW20"), 7, [&](const base::Result<void>& result) {
        done = static_cast<bool>(result);
    });

    EXPECT_THAT(source->written, ElementsAre("MW20=7"));
    EXPECT_TRUE(done);
}

TEST_F(MachineLinkTest, EveryClientHearsTheState)
{
    RecordingClient one;
    RecordingClient two;
    link->Join(one);
    link->Join(two);
    source->events->OnState({LinkStatus::Lost, ": no answer"});
    link->Leave(one);
    source->events->OnState({LinkStatus::Running});

    EXPECT_THAT(one.heard, ElementsAre("lost: no answer"));
    EXPECT_THAT(two.heard, ElementsAre("lost: no answer", "running"));
    EXPECT_EQ(link->State(), (LinkState{LinkStatus::Running}));
}

TEST_F(MachineLinkTest, StepsBelongToTheClientThatAskedLast)
{
    RecordingClient one;
    RecordingClient two;
    link->Join(one);
    link->Join(two);
    link->WatchSteps(one, plc::StepRange{1, 2});
    link->WatchSteps(two, plc::StepRange{3, 4});
    link->WatchSteps(one, std::nullopt);

    EXPECT_TRUE(source->events->OnSteps({1, 2}, {}));
    two.takes = false;
    EXPECT_FALSE(source->events->OnSteps({3, 4}, {}));
    link->Leave(two);
    EXPECT_TRUE(source->events->OnSteps({3, 4}, {}));

    EXPECT_THAT(one.heard, IsEmpty());
    EXPECT_THAT(two.heard, ElementsAre("3-4"));
    EXPECT_FALSE(source->steps);
}

/// A machine of which every reading counts.
struct EachReadingTest : MachineLinkTest
{
    EachReadingTest() : MachineLinkTest(true) {}
};

TEST_F(EachReadingTest, IsToldAlsoWhenNothingHasChanged)
{
    link->Watch(first, OperandOf("MW20"));

    Turn({5});
    Turn({5});

    EXPECT_THAT(first.Take(), ElementsAre("5", "5"));
}

} // namespace
} // namespace plclink
