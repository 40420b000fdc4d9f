#include "plcwatch_machines.h"

#include <gtest/gtest.h>

namespace plcwatch {
namespace {

TEST(MachineLine, NamesTheMachineAndHowItsLinkIs)
{
    EXPECT_EQ(MachineLine({"press7", {plclink::LinkStatus::Running}}), "press7\trunning");
    EXPECT_EQ(
        MachineLine({"press7", {plclink::LinkStatus::Lost, "no answer"}}),
        "press7\tlost: no answer");
}

TEST(MachineJson, SaysAllThatTheMachineSaysOfItself)
{
    EXPECT_EQ(
        MachineJson({"press7", {plclink::LinkStatus::Running}, "1.2", true, {"service MW20"}}),
        R"({"machine": "press7", "link": "running", "reason": "", "version": "1.2", )"
        R"("listing": true, "writable": ["service MW20"]})");
}

} // namespace
} // namespace plcwatch
