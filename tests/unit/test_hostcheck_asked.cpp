#include "asked.h"
#include "debug_file.h"
#include "program.h"
#include "tempdir.h"

#include <gmock/gmock.h>

using hostcheck::OperandsFor;
using hostcheck::OperandsOf;
using hostcheck::Steps;
using hostcheck::StepsOf;
using hostcheck::UsualOperands;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

plc::Block BlockOf(std::int32_t firstStep, const std::vector<std::string>& lines)
{
    plc::Block block;
    block.name = "PB1";
    block.firstStep = firstStep;
    for (const std::string& text : lines) {
        plc::Line line;
        line.text = text;
        block.lines.push_back(line);
    }
    return block;
}

std::string DebugFileWith(const std::vector<plc::Block>& blocks)
{
    plc::Program program;
    program.blocks = blocks;
    return *plc::DebugFileOf(program);
}

} // namespace

TEST(HostcheckOperands, AreThoseOfTheListThatExist)
{
    EXPECT_THAT(
        OperandsOf("MB4/D\r\n E0.3 /B\nno operand\nMB512/D\nDB10.DBD12/G"),
        ElementsAre("MB4", "E0.3", "DB10.DBD12"));
}

TEST(HostcheckOperands, AreAsManyAsTheDebuggerWatches)
{
    std::string list;
    for (int i = 0; i < 30; ++i) {
        list += "MB" + std::to_string(i) + "/D\n";
    }
    EXPECT_THAT(OperandsOf(list), SizeIs(20));
}

TEST(HostcheckOperands, AreTheUsualOnesWithoutAList)
{
    EXPECT_EQ(OperandsFor("/nowhere/press"), UsualOperands());
}

TEST(HostcheckOperands, OfTheUsualListAllExist)
{
    std::string list;
    for (const std::string& operand : UsualOperands()) {
        list += operand + "/D\n";
    }
    EXPECT_EQ(OperandsOf(list), UsualOperands());
}

TEST(HostcheckOperands, AreReadFromTheListThatTheConfigurationNames)
{
    const TempDir folder;
    const std::string list = folder.Write("a.plc", "T5/D\n");
    folder.Write("plcdebug.ini", "[Settings]\nPLCLastFile=" + list + "\n");

    EXPECT_THAT(OperandsFor(folder.File("press")), ElementsAre("T5"));
}

TEST(HostcheckSteps, AreCountedAsThePageCountsThem)
{
    const std::string file = DebugFileWith(
        {BlockOf(7, {"NETWORK 1", ":U E0.0", ":NOP 0", ":= A0.0"}), BlockOf(9, {"TITLE only"})});

    EXPECT_THAT(StepsOf(file).value(), ElementsAre(Steps{7, 8}));
}

TEST(HostcheckSteps, AreNoMoreThanAPageShows)
{
    const std::string file = DebugFileWith({BlockOf(0, std::vector<std::string>(50, ":U E0.0"))});

    EXPECT_THAT(StepsOf(file).value(), ElementsAre(Steps{0, 19}));
}

TEST(HostcheckSteps, AreNoneInABlockWithoutLines)
{
    EXPECT_THAT(StepsOf(DebugFileWith({BlockOf(0, {})})).value(), IsEmpty());
}

TEST(HostcheckSteps, NeedAFileWithABlock)
{
    EXPECT_FALSE(StepsOf(""));
    EXPECT_FALSE(StepsOf(DebugFileWith({})));
}

TEST(HostcheckSteps, OfAFileThatIsCutShortAreThoseOfItsWholeRecords)
{
    const std::string file = DebugFileWith({BlockOf(0, {":U E0.0"}), BlockOf(1, {":U E0.1"})});

    EXPECT_THAT(StepsOf(file.substr(0, file.size() - 4)).value(), ElementsAre(Steps{0, 0}));
}
