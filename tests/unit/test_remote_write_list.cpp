#include "remoteoperands.h"
#include "tempdir.h"
#include "write_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

bool Allows(const std::string& text, const char* user, const char* operand)
{
    const auto list = ParseWriteList(text, "list");
    EXPECT_TRUE(list) << list.Message();
    return list && list->Allows(user, Operand(operand));
}

TEST(WriteList, AllowsNothingByItself)
{
    EXPECT_FALSE(WriteList().Allows("service", Operand("MW0")));
    EXPECT_FALSE(Allows("", "service", "MW0"));
}

TEST(WriteList, AllowsAnOperandToTheUserWhoIsNamed)
{
    EXPECT_TRUE(Allows("service MW20\n", "service", "MW20"));
    EXPECT_FALSE(Allows("service MW20\n", "other", "MW20"));
    EXPECT_FALSE(Allows("service MW20\n", "service", "MW22"));
    EXPECT_FALSE(Allows("service MW20\n", "service", "EW20"));
}

TEST(WriteList, AllowsWhatLiesWhollyInside)
{
    EXPECT_TRUE(Allows("service MW20", "service", "MB21"));
    EXPECT_TRUE(Allows("service MW20", "service", "M21.7"));
    EXPECT_FALSE(Allows("service MW20", "service", "MD20"));
    EXPECT_FALSE(Allows("service MW20", "service", "MW21"));
    EXPECT_FALSE(Allows("service M20.0", "service", "M20.1"));
}

TEST(WriteList, AllowsARangeUpToTheEndOfItsLastOperand)
{
    const std::string range = "service MW0-MW20";
    EXPECT_TRUE(Allows(range, "service", "MW0"));
    EXPECT_TRUE(Allows(range, "service", "MD18"));
    EXPECT_FALSE(Allows(range, "service", "MW21"));
    EXPECT_TRUE(Allows("service T3-T5", "service", "T5"));
    EXPECT_FALSE(Allows("service T3-T5", "service", "T6"));
    EXPECT_TRUE(Allows("service E0.3-E1.2", "service", "E1.0"));
    EXPECT_FALSE(Allows("service E0.3-E1.2", "service", "E1.3"));
}

TEST(WriteList, KeepsDataBlocksApart)
{
    EXPECT_TRUE(Allows("service DB10.DBW0-DB10.DBW8", "service", "DB10.DBW4"));
    EXPECT_FALSE(Allows("service DB10.DBW0-DB10.DBW8", "service", "DB20.DBW4"));
}

TEST(WriteList, SkipsCommentsAndEmptyLines)
{
    const auto list =
        ParseWriteList("# who\r\n\n  service   MW0 # the speed\r\nother T1-T2", "list");

    ASSERT_TRUE(list) << list.Message();
    EXPECT_THAT(list->Lines(), ElementsAre("service MW0", "other T1-T2"));
}

TEST(WriteList, TellsAllFaultsAtOnceWithTheirLines)
{
    const auto list = ParseWriteList(
        "service\nservice MW0\nservice XY\nser/vice MW0\nservice MW4-MW0\nservice MW0-EW4\n"
        "service MW0-MB4\nservice MW0 MW2\nservice MB512\n",
        "list");

    ASSERT_FALSE(list);
    EXPECT_EQ(
        list.Message(),
        "list:1: a line is a user, then an operand or a range, as in: service MW0-MW20\n"
        "list:3: there is no such operand\n"
        "list:4: this is no name of a user\n"
        "list:5: the range is upside down\n"
        "list:6: both ends of a range are of one kind, and of one data block\n"
        "list:7: both ends of a range are of one kind, and of one data block\n"
        "list:8: a line is a user, then an operand or a range, as in: service MW0-MW20\n"
        "list:9: there is no such operand");
}

TEST(WriteList, HasNotMoreLinesThanAMachineTells)
{
    std::string text;
    for (std::size_t line = 0; line < mostPermissions; ++line) {
        text += "service MW0\n";
    }
    EXPECT_TRUE(ParseWriteList(text, "list"));

    const auto refused = ParseWriteList(text + "service MW2\n", "list");

    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.Message(), "list: more than 1000 lines allow something");
}

TEST(WriteList, ComesFromAFile)
{
    const TempDir dir;
    const std::string file = dir.Write("list", "service MW0\n");

    EXPECT_TRUE(ReadWriteListFile(file)->Allows("service", Operand("MW0")));
    EXPECT_THAT(ReadWriteListFile("/nowhere/list").Message(), HasSubstr("/nowhere/list"));
}

} // namespace
} // namespace plcremote
