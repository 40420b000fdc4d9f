#include "loader.h"
#include "messageof.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace plchost {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// A folder of its own, laid out as an installed program.
struct LoaderTest : testing::Test
{
    LoaderTest()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "loaderXXXXXX").string();
        root = mkdtemp(pattern.data());
        std::filesystem::create_directories(root / "bin");
    }

    ~LoaderTest() override { std::filesystem::remove_all(root); }

    std::filesystem::path Touch(const std::filesystem::path& file) const
    {
        std::filesystem::create_directories((root / file).parent_path());
        std::ofstream(root / file) << "no library";
        return root / file;
    }

    std::filesystem::path root;
};

TEST_F(LoaderTest, FindsTheLibraryBesideTheProgramsFolder)
{
    const auto library = Touch("lib/libplcdebug.so");
    Touch("bin/libplcdebug.so");

    const auto found = FindPlugin(root / "bin");

    ASSERT_TRUE(found);
    EXPECT_EQ(*found, library);
}

TEST_F(LoaderTest, FindsTheLibraryInTheFolderOfItsArchitecture)
{
    const auto library = Touch("lib/" PLCHOST_LIBRARY_ARCHITECTURE "/libplcdebug.so");

    const auto found = FindPlugin(root / "bin");

    ASSERT_TRUE(found);
    EXPECT_EQ(*found, library);
}

TEST_F(LoaderTest, TellsWhereItLookedAndHowToName)
{
    const auto found = FindPlugin(root / "bin");

    EXPECT_THAT(
        MessageOf(found), AllOf(HasSubstr((root / "lib").string()), HasSubstr("--plugin PATH")));
}

TEST_F(LoaderTest, FindsTheDataBesideTheProgramsFolder)
{
    const auto missing = FindDataFolder(root / "bin");
    Touch("share/plcdebug/languages/de.lng");
    const auto found = FindDataFolder(root / "bin");

    EXPECT_THAT(MessageOf(missing), HasSubstr("--data-dir DIR"));
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, root / "share/plcdebug");
}

TEST_F(LoaderTest, AMissingFileIsNamed)
{
    EXPECT_THAT(
        MessageOf(LoadPlugin(root / "none.so")),
        AllOf(HasSubstr("no file"), HasSubstr("none.so"), HasSubstr("--plugin PATH")));
}

TEST_F(LoaderTest, AFileThatIsNoLibraryIsNamed)
{
    EXPECT_THAT(
        MessageOf(LoadPlugin(Touch("lib/libplcdebug.so"))),
        AllOf(HasSubstr("cannot load"), HasSubstr("libplcdebug.so"), HasSubstr("architecture")));
}

TEST_F(LoaderTest, ALibraryWithoutOneExportIsNamedWithIt)
{
    EXPECT_THAT(
        MessageOf(LoadPlugin(OLD_PLUGIN)),
        AllOf(
            HasSubstr("has no symbol \"ExportAnswerProgState\""),
            HasSubstr("is it an older library, or another one?")));
}

TEST_F(LoaderTest, AnotherLibraryAltogetherIsNamed)
{
    EXPECT_THAT(
        MessageOf(LoadPlugin(OTHER_LIBRARY)),
        AllOf(
            HasSubstr("has no symbol \"ExportCreatePlcDebugger\""), HasSubstr("or another one?")));
}

TEST_F(LoaderTest, ResolvesTheFourExports)
{
    const auto plugin = LoadPlugin(FAKE_PLUGIN);

    ASSERT_EQ(MessageOf(plugin), "");
    EXPECT_EQ(plugin->create(nullptr), 1);
    EXPECT_EQ(plugin->answerReadVar(nullptr), 2);
    EXPECT_EQ(plugin->answerProgramState(nullptr), 3);
    plugin->destroy();
}

} // namespace
} // namespace plchost
