#include "machines_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plchost {
namespace {

using plclink::LinkStatus;
using testing::ElementsAre;

const HostTexts& english = TextsIn("en");

TEST(MachinesView, TellsWhatThisUserMayWrite)
{
    plcremote::ListedMachine machine{"press7", {LinkStatus::Lost, "no answer"}, "plcwatch 1", true};
    machine.writable = {"service MW0-MW20", "servicer MW30", "service M100.0"};

    const ShownMachine shown = Shown(english, machine, "service");

    EXPECT_EQ(shown.name, "press7");
    EXPECT_EQ(shown.status, LinkStatus::Lost);
    EXPECT_EQ(shown.reason, "no answer");
    EXPECT_EQ(shown.programPage, "yes");
    EXPECT_EQ(shown.writable, "MW0-MW20, M100.0");
    EXPECT_EQ(shown.version, "plcwatch 1");
    EXPECT_EQ(Shown(english, {"press8"}, "service").programPage, "no");
}

TEST(MachinesView, SaysWhyNoMachineIsThere)
{
    EXPECT_EQ(PlantSentence(english, {LinkStatus::Connecting}, 0), "Broker: connecting");
    EXPECT_EQ(
        PlantSentence(english, {LinkStatus::Refused, "wrong password"}, 3),
        "Broker: refused (wrong password)");
    EXPECT_EQ(
        PlantSentence(english, {LinkStatus::Running}, 0), "No machine is heard in this plant.");
    EXPECT_EQ(PlantSentence(english, {LinkStatus::Running}, 1), "");
}

TEST(MachinesView, OpensAMachineAsThePlantWasOpened)
{
    Options options;
    options.plantAddress = "mqtts://service@broker/hall1";
    EXPECT_THAT(
        OpeningCommand("plchost", options, "press7", "de"),
        ElementsAre(
            "plchost",
            "--machine",
            "mqtts://service@broker/hall1/press7",
            "--debugger",
            "--language",
            "de"));

    options.access = {"ca.crt", "service.password", true};
    options.plugin = "lib.so";
    options.dataFolder = "data";
    options.configFolder = "config";
    EXPECT_THAT(
        OpeningCommand("plchost", options, "press7", "de"),
        ElementsAre(
            "plchost",
            "--machine",
            "mqtts://service@broker/hall1/press7",
            "--debugger",
            "--language",
            "de",
            "--ca",
            "ca.crt",
            "--password-file",
            "service.password",
            "--plugin",
            "lib.so",
            "--data-dir",
            "data",
            "--config-dir",
            "config/press7",
            "--insecure"));
}

} // namespace
} // namespace plchost
