#include "plcdebug_host.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// The library as a file: what it offers, where it looks for its own, how it stays.

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::UnorderedElementsAre;

/// @return the lines that a program writes about a library.
std::vector<std::string>
Ask(const std::string& command, const std::string& library = PLCDEBUG_LIBRARY)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        popen((command + " '" + library + "'").c_str(), "r"), pclose);
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

/// @return what a library exports, as nm writes it with these options.
std::vector<std::string> Exported(const std::string& options, const std::string& library)
{
    std::vector<std::string> names;
    for (const std::string& line : Ask("nm " + options + " --defined-only", library)) {
        std::istringstream words(line);
        std::string address;
        std::string type;
        std::string name;
        words >> address >> type >> std::ws;
        std::getline(words, name);
        names.push_back(name);
    }
    return names;
}

} // namespace

TEST(Library, OffersTheFourExportsUnderTheirPlainNamesAndNothingElse)
{
    EXPECT_THAT(
        Exported("-D", PLCDEBUG_LIBRARY),
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

TEST(Library, SaysItsVersionToWhoOnlyHasTheFile)
{
    EXPECT_THAT(
        Ask("readelf --string-dump=.plcdebug.version"),
        Contains(HasSubstr("libplcdebug " PLCDEBUG_VERSION)));
}

TEST(Library, IsNeverUnloaded)
{
    EXPECT_THAT(Ask("readelf -d"), Contains(HasSubstr("NODELETE")));
}

TEST(CoreLibrary, OffersNamesOfItsOwnAlone)
{
    EXPECT_THAT(
        Exported("-DC", KTCORE_LIBRARY),
        AllOf(
            Not(IsEmpty()),
            Each(MatchesRegex("(guard variable for |typeinfo (name )?for |vtable for )?Kt.*"))));
}

TEST(Boundary, RecordsHaveTheirFixedSizes)
{
    EXPECT_EQ(sizeof(CMD_DATA), 506U);
    EXPECT_EQ(sizeof(PLC_DBG_INIT), sizeof(void*) == 4 ? 280U : 304U);
    EXPECT_EQ(offsetof(PLC_DBG_INIT, pfnPrgStateRequest), sizeof(void*) == 4 ? 268U : 280U);
}
