#include "debugfile.h"
#include "plcdebug_loader.h"
#include "plcprgpanel_file.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

// What the header for hosts says of program debug files, beside what the debugger makes of them.

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct LoaderHeader : testing::Test
{
    bool Check(const std::string& file) { return PlcCheckDebugFile(file.c_str(), why.data()) != 0; }

    bool Write(const std::string& file, const std::string& content)
    {
        return PlcWriteDebugFile(file.c_str(), content.data(), content.size(), why.data()) != 0;
    }

    static bool DebuggerFindsABlockIn(const std::string& file)
    {
        return !ReadBlockIndex(OpenPrgFile(file).get()).empty();
    }

    TempDir dir;
    std::array<char, PLC_WHY_SIZE> why{};
};

TEST_F(LoaderHeader, FindsABlockExactlyWhereTheDebuggerDoesHoweverTheFileIsCut)
{
    const std::string whole = DebugFile({{"OB1", 1, {"U E0.0"}}, {"FB57", 2, {"= A0.0", "BE"}}});
    int good = 0;

    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::string file = dir.Write("cut", whole.substr(0, size));
        EXPECT_EQ(Check(file), DebuggerFindsABlockIn(file)) << size << " bytes";
        good += Check(file) ? 1 : 0;
    }

    EXPECT_EQ(good, 57); // from the end of the first of two records on
}

TEST_F(LoaderHeader, FindsNoBlockWhereTheIndexNamesNone)
{
    for (const std::int32_t blocks : {0, -1}) {
        const std::string file =
            dir.Write("none", DebugFileHead(12) + LittleEndian(blocks) + std::string(56, 'x'));
        EXPECT_FALSE(Check(file));
        EXPECT_FALSE(DebuggerFindsABlockIn(file));
        EXPECT_THAT(why.data(), HasSubstr("holds no block"));
    }
}

TEST_F(LoaderHeader, TakesAFolderAndAPipeForNoFile)
{
    ASSERT_EQ(mkfifo(dir.File("pipe").c_str(), 0600), 0);

    for (const std::string& file : {dir.Path().string(), dir.File("pipe"), dir.File("nothing")}) {
        EXPECT_FALSE(Check(file));
        EXPECT_EQ(std::string(why.data()), "no program debug file \"" + file + "\"");
    }
}

TEST_F(LoaderHeader, MakesAnEmptyFileThatHasOneBlockWithoutLines)
{
    std::array<unsigned char, PLC_EMPTY_DEBUG_FILE_SIZE> content{};

    PlcMakeEmptyDebugFile("press", content.data());

    EXPECT_EQ(std::string(content.begin() + 8, content.end()), DebugFile({{"press"}}).substr(8));
}

TEST_F(LoaderHeader, CutsANameThatIsTooLongForABlock)
{
    std::array<unsigned char, PLC_EMPTY_DEBUG_FILE_SIZE> content{};

    PlcMakeEmptyDebugFile(std::string(100, 'x').c_str(), content.data());

    EXPECT_EQ(
        std::string(content.begin() + 8, content.end()),
        DebugFile({{std::string(47, 'x')}}).substr(8));
}

TEST_F(LoaderHeader, ReplacesAFileAsAWhole)
{
    const std::string file = dir.Write("p_plcdbgi.dat", "something longer than the new one");

    EXPECT_TRUE(Write(file, "new"));

    EXPECT_EQ(dir.Read("p_plcdbgi.dat"), "new");
    EXPECT_THAT(dir.Names(), ElementsAre("p_plcdbgi.dat"));
}

TEST_F(LoaderHeader, LeavesTheOldFileWhereTheNewOneCannotBeWritten)
{
    const std::string file = dir.Write("p_plcdbgi.dat", "old");
    std::filesystem::create_directory(file + ".new");

    EXPECT_FALSE(Write(file, "new"));

    EXPECT_EQ(dir.Read("p_plcdbgi.dat"), "old");
    EXPECT_EQ(std::string(why.data()), "cannot write \"" + file + "\": Is a directory");
}

TEST_F(LoaderHeader, LeavesNothingBesideAFileThatCannotBeReplaced)
{
    std::filesystem::create_directory(dir.File("p_plcdbgi.dat"));

    EXPECT_FALSE(Write(dir.File("p_plcdbgi.dat"), "new"));

    EXPECT_THAT(dir.Names(), ElementsAre("p_plcdbgi.dat"));
}

TEST_F(LoaderHeader, RefusesAPathThatIsLongerThanAnyOfADebugger)
{
    EXPECT_FALSE(Write(dir.File(std::string(PLC_DEBUG_FILE_PATH_SIZE, 'x')), "new"));
    EXPECT_THAT(why.data(), HasSubstr("is too long"));
    EXPECT_THAT(dir.Names(), ElementsAre());
}

TEST_F(LoaderHeader, NamesTheFileOfAPrefixOfEveryLength)
{
    const std::string longest(PLC_PATH_SIZE, 'x');
    std::array<char, PLC_DEBUG_FILE_PATH_SIZE> path{};

    PlcDebugFilePath("/a/b/prog", path.data());
    EXPECT_EQ(std::string(path.data()), "/a/b/prog_plcdbgi.dat");
    PlcDebugFilePath(longest.c_str(), path.data());
    EXPECT_EQ(std::string(path.data()), longest + "_plcdbgi.dat");
}

} // namespace
