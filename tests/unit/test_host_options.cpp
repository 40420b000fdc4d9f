#include "command_line.h"
#include "exit_status.h"
#include "options.h"
#include "projectfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

const std::string aFile = ProjectFile("README.md");

using Parsed = std::variant<Options, ExitStatus>;

Parsed Parse(std::vector<const char*> words)
{
    words.insert(words.begin(), "plchost");
    return ParseOptions(static_cast<int>(words.size()), words.data());
}

/// What was said while a wrong command line was refused; empty when it was not refused.
std::string Refusal(const std::vector<const char*>& words)
{
    testing::internal::CaptureStderr();
    const Parsed parsed = Parse(words);
    const std::string said = testing::internal::GetCapturedStderr();
    const auto* const exit = std::get_if<ExitStatus>(&parsed);
    return exit != nullptr && exit->status == base::exitUsage ? said : "";
}

TEST(ParseOptions, WithoutWordsGivesTheBottlingLineUntilTheOperatorEndsIt)
{
    const Parsed parsed = Parse({});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.sample, "bottling");
    EXPECT_EQ(options.program, "");
    EXPECT_EQ(options.cycle, 10ms);
    EXPECT_FALSE(options.run);
    EXPECT_FALSE(options.fault);
    EXPECT_FALSE(options.debugger);
    EXPECT_FALSE(options.trace);
}

TEST(ParseOptions, TakesEverything)
{
    const std::string folder = std::filesystem::temp_directory_path();
    const Parsed parsed = Parse(
        {"--plugin",   "p.so",    "--program",    aFile.c_str(), "--language",   "de",
         "--cycle",    "20",      "--run",        "1.5",         "--screenshot", "a.png",
         "--fault",    "flood",   "--config-dir", "c",           "--data-dir",   folder.c_str(),
         "--debugger", "--trace", "--record",     "a.rec"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.plugin, "p.so");
    EXPECT_EQ(options.program, aFile);
    EXPECT_EQ(options.language, "de");
    EXPECT_EQ(options.cycle, 20ms);
    EXPECT_EQ(options.run, 1500ms);
    EXPECT_EQ(options.screenshot, "a.png");
    EXPECT_EQ(options.fault, Fault::Flood);
    EXPECT_EQ(options.configFolder, "c");
    EXPECT_EQ(options.dataFolder, folder);
    EXPECT_TRUE(options.debugger);
    EXPECT_TRUE(options.trace);
    EXPECT_EQ(options.record, "a.rec");
}

TEST(ParseOptions, RefusesWhatItDoesNotKnowByName)
{
    EXPECT_THAT(Refusal({"--nonsense"}), HasSubstr("--nonsense"));
    EXPECT_THAT(Refusal({"--fault", "no"}), HasSubstr("length-65535"));
    EXPECT_THAT(Refusal({"--language", "fr"}), HasSubstr("--language"));
    EXPECT_THAT(Refusal({"--program", "/nowhere/x.il"}), HasSubstr("/nowhere/x.il"));
    EXPECT_THAT(Refusal({"--cycle", "0"}), HasSubstr("--cycle"));
    EXPECT_THAT(Refusal({"--run", "-1"}), HasSubstr("--run"));
}

TEST(ParseOptions, RefusesInOneLine)
{
    EXPECT_EQ(
        Refusal({"--run"}),
        "plchost: --run: 1 required SECONDS missing (plchost --help tells more)\n");
}

TEST(ParseOptions, ARecordingOpensTheDebuggerAndTakesASpeed)
{
    const Parsed parsed = Parse({"--replay", aFile.c_str(), "--speed", "2.5"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.replay, aFile);
    EXPECT_EQ(options.speed, 2.5);
    EXPECT_TRUE(options.debugger);
}

TEST(ParseOptions, ARecordingComesWithoutAMachineAndIsNotRecorded)
{
    EXPECT_THAT(
        Refusal({"--replay", aFile.c_str(), "--program", aFile.c_str()}), HasSubstr("--program"));
    EXPECT_THAT(Refusal({"--replay", aFile.c_str(), "--cycle", "5"}), HasSubstr("--cycle"));
    EXPECT_THAT(Refusal({"--replay", aFile.c_str(), "--record", "a.rec"}), HasSubstr("--record"));
    EXPECT_THAT(Refusal({"--replay", "/nowhere/a.rec"}), HasSubstr("/nowhere/a.rec"));
    EXPECT_THAT(Refusal({"--replay", aFile.c_str(), "--speed", "0"}), HasSubstr("--speed"));
    EXPECT_THAT(Refusal({"--speed", "2"}), HasSubstr("--replay"));
}

TEST(ParseOptions, OpensTheMachineAtAnAddress)
{
    const auto opened = [](const char* address) {
        const Parsed parsed = Parse({"--machine", address});
        EXPECT_TRUE(std::holds_alternative<Options>(parsed)) << address;
        const auto* const options = std::get_if<Options>(&parsed);
        return options != nullptr ? *options : Options();
    };

    EXPECT_EQ(opened("soft:lift").sample, "lift");
    EXPECT_EQ(opened("soft:lift.il").program, "lift.il");
    EXPECT_EQ(opened("recording:a.rec").replay, "a.rec");
    EXPECT_TRUE(opened("recording:a.rec").debugger);
}

TEST(ParseOptions, RefusesAddressesThatAreWrongAndTwoMachinesAtOnce)
{
    EXPECT_THAT(Refusal({"--machine", "lift"}), HasSubstr("soft:FILE.il"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--program", aFile.c_str()}), HasSubstr("--program"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--replay", aFile.c_str()}), HasSubstr("--replay"));
    EXPECT_THAT(Refusal({"--machine", "soft:lift", "--speed", "2"}), HasSubstr("--replay"));
    EXPECT_THAT(Refusal({"--machine", "recording:a.rec", "--cycle", "5"}), HasSubstr("--cycle"));
    EXPECT_THAT(
        Refusal({"--machine", "recording:a.rec", "--record", "b.rec"}), HasSubstr("--record"));
}

TEST(ParseOptions, WatchesADeviceWithItsMapAndItsListing)
{
    const Parsed parsed = Parse(
        {"--machine",
         "modbus://oven.local:1502/7",
         "--map",
         "oven.map",
         "--listing",
         aFile.c_str()});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    ASSERT_TRUE(options.device);
    EXPECT_EQ(std::get<plclink::ModbusTcp>(*options.device).host, "oven.local");
    EXPECT_EQ(options.deviceName, "modbus://oven.local:1502/7");
    EXPECT_EQ(options.map, "oven.map");
    EXPECT_EQ(options.listing, aFile);
}

TEST(ParseOptions, WatchesAMachineFarAway)
{
    const char* const machine = "mqtts://service@broker/hall1/press7";
    const Parsed parsed = Parse({"--machine", machine, "--password-file", aFile.c_str()});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    ASSERT_TRUE(options.farMachine);
    EXPECT_EQ(options.farMachine->machine, "press7");
    EXPECT_EQ(options.deviceName, machine);
    EXPECT_EQ(options.access.passwordFile, aFile);
    EXPECT_THAT(Refusal({"--machine", machine, "--cycle", "20"}), HasSubstr("--cycle"));
    EXPECT_THAT(Refusal({"--machine", machine, "--record", "a.rec"}), HasSubstr("--record"));
    EXPECT_THAT(Refusal({"--machine", "mqtts://broker"}), HasSubstr("/PLANT/MACHINE"));
}

TEST(ParseOptions, RefusesABrokersOptionsWithoutABroker)
{
    EXPECT_THAT(Refusal({"--insecure"}), HasSubstr("--insecure"));
}

TEST(ParseOptions, TakesAPlantWithoutWhatIsOfOneMachine)
{
    const char* const plant = "mqtts://service@broker/hall1";

    const Parsed parsed = Parse({"--machines", plant, "--open", "press7", "--insecure"});

    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    ASSERT_TRUE(options.plant);
    EXPECT_EQ(options.plant->plant, "hall1");
    EXPECT_EQ(options.plantAddress, plant);
    EXPECT_EQ(options.openMachine, "press7");
    EXPECT_THAT(Refusal({"--machines", "mqtts://service@broker/hall1/press7"}), HasSubstr("PLANT"));
    EXPECT_THAT(Refusal({"--machines", plant, "--open", "a/b"}), HasSubstr("no machine's name"));
    EXPECT_THAT(Refusal({"--open", "press7"}), HasSubstr("--machines"));
    EXPECT_THAT(Refusal({"--machines", plant, "--machine", "soft:lift"}), HasSubstr("--machine"));
    EXPECT_THAT(Refusal({"--machines", plant, "--program", aFile.c_str()}), HasSubstr("--program"));
    EXPECT_THAT(Refusal({"--machines", plant, "--replay", aFile.c_str()}), HasSubstr("--replay"));
    EXPECT_THAT(Refusal({"--machines", plant, "--trace"}), HasSubstr("--trace"));
    EXPECT_THAT(Refusal({"--machines", plant, "--cycle", "20"}), HasSubstr("--cycle"));
}

TEST(ParseOptions, RefusesADeviceThatIsNotWholeAndOneBesideAMachine)
{
    const std::vector<const char*> device{"--machine", "modbus://oven/1", "--map", "oven.map"};
    const auto with = [&device](std::vector<const char*> more) {
        more.insert(more.begin(), device.begin(), device.end());
        return Refusal(more);
    };

    EXPECT_THAT(
        Refusal({"--machine", "modbus://oven/1"}),
        HasSubstr("\"modbus://oven/1\" needs a map of its operands: --map FILE"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--map", "oven.map"}),
        HasSubstr("\"soft:lift\" needs no map"));
    EXPECT_THAT(
        Refusal({"--machine", "modbus://oven", "--map", "oven.map"}),
        HasSubstr("the right form is modbus://HOST[:PORT]/UNIT"));
    EXPECT_THAT(Refusal({"--map", "oven.map"}), HasSubstr("--machine"));
    EXPECT_THAT(
        Refusal({"--machine", "soft:lift", "--listing", aFile.c_str()}), HasSubstr("--map"));
    EXPECT_THAT(with({"--program", aFile.c_str()}), HasSubstr("--program"));
    EXPECT_THAT(with({"--replay", aFile.c_str()}), HasSubstr("--replay"));
    EXPECT_THAT(with({"--cycle", "5"}), HasSubstr("--cycle"));
}

TEST(ParseOptions, TakesAPictureOnlyOfARunThatEnds)
{
    EXPECT_THAT(Refusal({"--screenshot", "a.png"}), HasSubstr("--run"));
}

TEST(ParseOptions, HelpTellsEveryFaultAndStatus)
{
    testing::internal::CaptureStdout();
    const Parsed parsed = Parse({"--help"});
    const std::string help = testing::internal::GetCapturedStdout();

    ASSERT_TRUE(std::holds_alternative<ExitStatus>(parsed));
    EXPECT_EQ(std::get<ExitStatus>(parsed).status, exitGood);
    for (const NamedFault& named : NamedFaults()) {
        EXPECT_THAT(help, HasSubstr(named.description));
    }
    EXPECT_THAT(help, HasSubstr("3  the debugger called back on another thread"));
}

} // namespace
} // namespace plchost
