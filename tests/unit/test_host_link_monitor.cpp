#include "link_monitor.h"
#include "silentwatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using plclink::LinkStatus;
using testing::ElementsAre;

/// A machine that the test lets speak.
class SpokenSource : public plclink::Source
{
public:
    void Start(plclink::SourceEvents& theEvents) override { events = &theEvents; }

    base::Result<void> Check(const plc::Operand&) const override { return {}; }

    void Watch(std::shared_ptr<const plclink::WatchList> theList) override
    {
        list = std::move(theList);
    }

    void Write(const plc::Operand&, std::uint32_t, plclink::WriteDone done) override { done({}); }

    std::chrono::milliseconds TurnTime() const override { return 100ms; }

    void Tell(LinkStatus status, const std::string& reason = "") const
    {
        events->OnState({status, reason});
    }

    void TellValue(std::chrono::milliseconds age) const
    {
        events->OnReadings(*list, {{0, {17, plclink::Clock::now() - age}}});
    }

    plclink::SourceEvents* events = nullptr;
    std::shared_ptr<const plclink::WatchList> list;
};

class LinkMonitorTest : public testing::Test
{
protected:
    LinkMonitorTest()
    {
        auto owned = std::make_unique<SpokenSource>();
        source = owned.get();
        link = std::make_unique<plclink::MachineLink>(std::move(owned));
        monitor = std::make_unique<LinkMonitor>(
            *link, [this](const std::string& sentence) { said.push_back(sentence); });
        link->Start();
        link->Watch(watcher, plc::ParseOperand("MW20").value());
    }

    std::vector<std::string> said;
    SilentWatcher watcher;
    SpokenSource* source = nullptr;
    std::unique_ptr<plclink::MachineLink> link;
    std::unique_ptr<LinkMonitor> monitor;
};

TEST_F(LinkMonitorTest, TellsEachChangeOnceAlsoThoseBetweenTwoLooks)
{
    EXPECT_EQ(monitor->Look().state.status, LinkStatus::Connecting);
    source->Tell(LinkStatus::Running);
    source->Tell(LinkStatus::Lost, "no answer");
    source->Tell(LinkStatus::Running);

    monitor->Look();
    monitor->Look();

    EXPECT_THAT(
        said,
        ElementsAre("the link is running", "the link is lost: no answer", "the link is running"));
}

TEST_F(LinkMonitorTest, SaysThatALinkIsSlowThatSaysThatItRuns)
{
    source->Tell(LinkStatus::Running);
    source->TellValue(0ms);
    EXPECT_EQ(monitor->Look().state.status, LinkStatus::Running);

    source->TellValue(1h);

    EXPECT_EQ(monitor->Look().state.status, LinkStatus::Slow);
    source->TellValue(0ms);
    EXPECT_EQ(monitor->Look().state.status, LinkStatus::Running);
    EXPECT_THAT(
        said, ElementsAre("the link is running", "the link is slow", "the link is running"));
}

TEST_F(LinkMonitorTest, KeepsTheValueOfALostMachineAndMarksIt)
{
    source->Tell(LinkStatus::Running);
    source->TellValue(1h);
    source->Tell(LinkStatus::Lost, "no answer");

    const LinkView view = monitor->Look();

    EXPECT_EQ(view.state.reason, "no answer");
    ASSERT_EQ(view.operands.size(), 1U);
    EXPECT_EQ(view.operands[0].value, "17 (0x0011)");
    EXPECT_EQ(view.operands[0].age, "1 h 00 min");
    EXPECT_NE(view.operands[0].oldSince, "");
}

TEST_F(LinkMonitorTest, ShowsWhatIsWatchedAndNothingElse)
{
    EXPECT_EQ(monitor->Look().operands.size(), 1U);

    link->Unwatch(watcher);

    EXPECT_EQ(monitor->Look().operands.size(), 0U);
}

} // namespace
} // namespace plchost
