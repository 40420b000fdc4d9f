#include "debugfile.h"
#include "messageof.h"
#include "settings.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace plchost {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(FilesIn, AreWhatTheDebuggerDerivesFromThePrefix)
{
    const ConfigFiles files = FilesIn("/home/me/.config/plchost/", "bottling");

    EXPECT_EQ(files.prefix, "/home/me/.config/plchost/bottling");
    EXPECT_EQ(files.settings, "/home/me/.config/plchost/plcdebug.ini");
    EXPECT_EQ(files.debugFile, "/home/me/.config/plchost/bottling_plcdbgi.dat");
}

TEST(FilesIn, AreAbsoluteAlsoInARelativeFolder)
{
    EXPECT_EQ(
        FilesIn("here", "bottling").prefix,
        (std::filesystem::current_path() / "here/bottling").string());
}

TEST(WriteSettings, ChangesTheHostsOwnKeysOnly)
{
    const TempDir dir;
    const auto file =
        dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=/x/y.plc\nLanguage=de\nOther=1\n");

    EXPECT_EQ(MessageOf(WriteSettings(file, {"/lng", "en"})), "");

    EXPECT_EQ(
        dir.Read("plcdebug.ini"),
        "[Settings]\nLanguagePath=/lng\nPLCLastFile=/x/y.plc\nLanguage=en\nOther=1\n");
    EXPECT_EQ(ReadLanguage(file), "en");
}

TEST(WriteSettings, KeepsASymbolicLinkAndTheFilesMode)
{
    const TempDir dir;
    const auto real = dir.Write("real.ini", "");
    std::filesystem::permissions(
        real, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    std::filesystem::create_symlink(real, dir.File("plcdebug.ini"));

    EXPECT_EQ(MessageOf(WriteSettings(dir.File("plcdebug.ini"), {"/lng", "en"})), "");

    EXPECT_TRUE(std::filesystem::is_symlink(dir.File("plcdebug.ini")));
    EXPECT_THAT(dir.Read("real.ini"), HasSubstr("Language=en"));
    EXPECT_EQ(
        std::filesystem::status(real).permissions(),
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(WriteSettings, TellsWhichFileCannotBeWritten)
{
    EXPECT_THAT(
        MessageOf(WriteSettings("/nowhere/plcdebug.ini", {"/lng", "en"})),
        HasSubstr("cannot write \"/nowhere/plcdebug.ini\""));
}

TEST(WriteSettings, LeavesAFileAloneThatItCannotRead)
{
    const TempDir dir;
    std::filesystem::create_directory(dir.File("plcdebug.ini"));

    EXPECT_THAT(
        MessageOf(WriteSettings(dir.File("plcdebug.ini"), {"/lng", "en"})),
        HasSubstr("cannot read"));
}

TEST(ReadLanguage, IsEmptyWithoutAFile)
{
    EXPECT_EQ(ReadLanguage("/nowhere/plcdebug.ini"), "");
}

/// A configuration folder, and a sample list beside it.
struct SeedWatchListTest : testing::Test
{
    const TempDir dir;
    const std::string sample = dir.Write("sample", "EB0/B\n");
    const ConfigFiles files = FilesIn(dir.Path(), "bottling");
};

TEST_F(SeedWatchListTest, CopiesTheSampleAndRecordsIt)
{
    EXPECT_EQ(MessageOf(SeedWatchList(files, sample)), "");

    EXPECT_EQ(dir.Read("bottling.plc"), "EB0/B\n");
    EXPECT_EQ(
        dir.Read("plcdebug.ini"), "[Settings]\nPLCLastFile=" + dir.File("bottling.plc") + "\n");
}

TEST_F(SeedWatchListTest, LeavesALastListAsItIs)
{
    dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=/x/mine.plc\n");

    EXPECT_EQ(MessageOf(SeedWatchList(files, sample)), "");

    EXPECT_EQ(dir.Read("plcdebug.ini"), "[Settings]\nPLCLastFile=/x/mine.plc\n");
    EXPECT_FALSE(std::filesystem::exists(dir.File("bottling.plc")));
}

TEST_F(SeedWatchListTest, DoesNotOverwriteAListOfThatName)
{
    dir.Write("bottling.plc", "MB1/D\n");

    EXPECT_EQ(MessageOf(SeedWatchList(files, sample)), "");

    EXPECT_EQ(dir.Read("bottling.plc"), "MB1/D\n");
}

TEST_F(SeedWatchListTest, DoesNotOverwriteAListOfThatNameByOneOfOperands)
{
    dir.Write("bottling.plc", "MB1/D\n");

    EXPECT_EQ(MessageOf(SeedWatchListOf(files, {"MW20"})), "");

    EXPECT_EQ(dir.Read("bottling.plc"), "MB1/D\n");
}

TEST_F(SeedWatchListTest, MakesOneOfOperandsOnlyWhereThereIsNone)
{
    EXPECT_EQ(MessageOf(SeedWatchListOf(files, {})), "");
    EXPECT_FALSE(std::filesystem::exists(files.prefix + ".plc"));

    EXPECT_EQ(MessageOf(SeedWatchListOf(files, {"MW20", "E0.3"})), "");
    EXPECT_EQ(dir.Read("bottling.plc"), "MW20/D\nE0.3/D\n");

    EXPECT_EQ(MessageOf(SeedWatchListOf(files, {"MW22"})), "");
    EXPECT_EQ(dir.Read("bottling.plc"), "MW20/D\nE0.3/D\n");
}

TEST_F(SeedWatchListTest, MakesNoLongerListThanTheDebuggerTakes)
{
    const std::string lines = WatchListOf(std::vector<std::string>(21, "MW20"));

    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 20);
}

TEST_F(SeedWatchListTest, AListToBeUsedReplacesTheLastOne)
{
    dir.Write("bottling.plc", "MB1/D\n");
    dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=/x/mine.plc\n");

    EXPECT_EQ(MessageOf(UseWatchList(files, "MW20/D\n")), "");

    EXPECT_EQ(dir.Read("bottling.plc"), "MW20/D\n");
    EXPECT_EQ(
        dir.Read("plcdebug.ini"), "[Settings]\nPLCLastFile=" + dir.File("bottling.plc") + "\n");
}

TEST(UseWatchList, TellsWhichFileCannotBeWritten)
{
    EXPECT_THAT(
        MessageOf(UseWatchList(FilesIn("/nowhere", "bottling"), "MW20/D\n")),
        HasSubstr("cannot write \"/nowhere/bottling.plc\""));
}

TEST_F(SeedWatchListTest, TellsWhenThereIsNoSample)
{
    EXPECT_THAT(
        MessageOf(SeedWatchList(files, dir.File("none"))),
        HasSubstr("cannot copy the sample list"));
    EXPECT_EQ(dir.Read("plcdebug.ini"), "");
}

TEST(CheckDebugFile, TakesAFileWithOneBlock)
{
    const TempDir dir;

    EXPECT_TRUE(CheckDebugFile(dir.Write("d", DebugFile({{"OB1"}}))));
}

TEST(CheckDebugFile, SaysHowToMendAFileThatTheDebuggerCannotOpenOn)
{
    const TempDir dir;

    EXPECT_THAT(
        MessageOf(CheckDebugFile("/nowhere/d")),
        AllOf(HasSubstr("no program debug file \"/nowhere/d\""), HasSubstr("start the host anew")));
    EXPECT_THAT(
        MessageOf(CheckDebugFile(dir.Write("d", ""))),
        AllOf(HasSubstr("holds no block"), HasSubstr("start the host anew")));
}

} // namespace
} // namespace plchost
