#include "plcdebug_host.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// The library as a file: what it offers, where it looks for its own, how it stays.

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

/// @return the lines that a program writes about the library.
std::vector<std::string> Ask(const std::string& command)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        popen((command + " '" PLCDEBUG_LIBRARY "'").c_str(), "r"), pclose);
    std::vector<std::string> lines;
    std::string line;
    for (int letter = std::getc(pipe.get()); letter != EOF; letter = std::getc(pipe.get())) {
        if (letter == '\n') {
            lines.push_back(line);
            line.clear();
        } else {
            line.push_back(static_cast<char>(letter));
        }
    }
    return lines;
}

} // namespace

TEST(Library, OffersTheFourExportsUnderTheirPlainNamesAndNothingElse)
{
    std::vector<std::string> names;
    for (const std::string& line : Ask("nm -D --defined-only")) {
        std::istringstream words(line);
        std::string address;
        std::string type;
        std::string name;
        words >> address >> type >> name;
        names.push_back(name);
    }

    EXPECT_THAT(
        names,
        UnorderedElementsAre(
            "ExportCreatePlcDebugger",
            "ExportDestroyPlcDebugger",
            "ExportAnswerReadVar",
            "ExportAnswerProgState"));
}

TEST(Library, FindsItsCoreLibraryBesideItself)
{
    const std::vector<std::string> lines = Ask("readelf -d");

    EXPECT_THAT(lines, Contains(HasSubstr("[libktcore.so]")));
    EXPECT_THAT(lines, Contains(HasSubstr("runpath: [$ORIGIN")));
}

TEST(Library, IsNeverUnloaded)
{
    EXPECT_THAT(Ask("readelf -d"), Contains(HasSubstr("NODELETE")));
}

TEST(Boundary, RecordsHaveTheirFixedSizes)
{
    EXPECT_EQ(sizeof(CMD_DATA), 506U);
    EXPECT_EQ(sizeof(PLC_DBG_INIT), sizeof(void*) == 4 ? 280U : 304U);
    EXPECT_EQ(offsetof(PLC_DBG_INIT, pfnPrgStateRequest), sizeof(void*) == 4 ? 268U : 280U);
}
