#include "far_link.h"

#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using plclink::LinkState;
using plclink::LinkStatus;

const FarLink::Time start{1h};

/// A machine that has told values and state a moment ago.
FarLink Serving()
{
    FarLink link;
    link.connected = start;
    link.heard = start + 10s;
    link.session = "a";
    link.state = StateMessage{"a", {LinkStatus::Running}};
    return link;
}

const FarLink::Time now = start + 10s + 300ms;

TEST(FarLink, RunsWhileValuesCome)
{
    EXPECT_EQ(Judge(Serving(), now), LinkState{LinkStatus::Running});
}

TEST(FarLink, IsLostWhenNoValuesComeAlthoughTheBrokerIsThere)
{
    EXPECT_EQ(Judge(Serving(), start + 10s + 999ms), LinkState{LinkStatus::Running});
    const auto judged = Judge(Serving(), start + 11s);

    EXPECT_EQ(
        judged, (LinkState{LinkStatus::Lost, "the broker is there, and the machine says nothing"}));
}

TEST(FarLink, IsSlowWhenValuesComeLate)
{
    FarLink link = Serving();
    link.late = 1s;

    EXPECT_EQ(Judge(link, now), LinkState{LinkStatus::Slow});
}

TEST(FarLink, IsAsTheMachineSaysOfItsController)
{
    FarLink link = Serving();
    link.state->link = {LinkStatus::Lost, "no answer within 300 ms"};

    EXPECT_EQ(Judge(link, now), link.state->link);
}

TEST(FarLink, OfAProgramThatHasEndedIsWhatWasLeftBehind)
{
    FarLink link = Serving();
    link.state->link = {LinkStatus::Lost, "the machine's program has ended"};

    EXPECT_EQ(Judge(link, start + 20s), link.state->link);
    link.heard.reset();
    EXPECT_EQ(Judge(link, start), link.state->link);
}

TEST(FarLink, WhatAFormerRunHasLeftBehindDoesNotCountForAMachineThatTellsValues)
{
    FarLink link = Serving();
    link.state = StateMessage{"b", {LinkStatus::Lost, "the machine's program has ended"}};

    EXPECT_EQ(Judge(link, now), LinkState{LinkStatus::Running});
}

TEST(FarLink, IsRefusedWhenTheMachineDoesNotTellWhatWeWatch)
{
    FarLink link = Serving();
    link.refusal = "there are 32 viewers";

    EXPECT_EQ(Judge(link, now), (LinkState{LinkStatus::Refused, "there are 32 viewers"}));
}

TEST(FarLink, WithoutABrokerIsAsTheConnectionSays)
{
    FarLink link = Serving();
    link.broken = LinkState{LinkStatus::Refused, "the password is wrong"};

    EXPECT_EQ(Judge(link, now), link.broken);
}

TEST(FarLink, IsNotJudgedBeforeTheMachineHadTheTimeToBeHeard)
{
    FarLink link;
    link.connected = start;

    EXPECT_EQ(Judge(link, start + 999ms), std::nullopt);
    EXPECT_EQ(
        Judge(link, start + 1s),
        (LinkState{
            LinkStatus::Lost, "the broker is there, and no machine of this name has been seen"}));
}

} // namespace
} // namespace plcremote
