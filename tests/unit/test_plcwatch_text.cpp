#include "file.h"
#include "plcwatch_text.h"
#include "plcwatch_variable.h"
#include "projectfile.h"
#include "sample_machines.h"
#include "tempdir.h"
#include "time_of_day.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace plcwatch {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

std::string TextOf(const char* name, const char* format, std::uint32_t value)
{
    return Show(*ParseVariable(name, format), value).text;
}

TEST(Show, FormatsAsTheWatchPageDoes)
{
    EXPECT_EQ(TextOf("MW20", "D", 0xFFFF), "-1");
    EXPECT_EQ(TextOf("MW20", "H", 0x1F), "001F");
    EXPECT_EQ(TextOf("EB1", "B", 5), "00000101");
    EXPECT_EQ(TextOf("MD24", "G", 0x7F800000), "inf");
    EXPECT_EQ(TextOf("MD24", "G", 0x7FC00000), "nan");
    EXPECT_EQ(Show(*ParseVariable("MW20", "D"), 0xFFFF).raw, -1);
}

TEST(ParseVariable, NamesOperandsAsTheWatchPageDoes)
{
    const auto variable = ParseVariable("DB10.DBW4", "D");

    ASSERT_TRUE(variable);
    EXPECT_EQ(NameOf(*variable), "DB10.DBW 4");
    EXPECT_EQ(plc::OperandName(variable->operand), "DB10.DBW4");
}

TEST(ParseVariable, SaysWhatIsWrong)
{
    EXPECT_THAT(ParseVariable("XY", "D").Message(), HasSubstr("\"XY\": no such operand"));
    EXPECT_THAT(ParseVariable("MW511", "D").Message(), HasSubstr("511"));
    EXPECT_FALSE(ParseVariable("", "D"));
}

TEST(ReadList, TakesOperandLinesAndTellsRefusedOnes)
{
    const TempDir dir;
    ASSERT_TRUE(base::ReplaceFile(dir.File("a.plc"), "MW20/D\r\nhello\r\nMB600/D\nE0.3/B"));

    const auto list = ReadList(dir.File("a.plc"));

    ASSERT_TRUE(list);
    ASSERT_EQ(list->variables.size(), 2U);
    EXPECT_EQ(NameOf(list->variables[0]), "MW 20");
    EXPECT_EQ(NameOf(list->variables[1]), "E 0.3");
    EXPECT_THAT(list->remarks, ElementsAre(HasSubstr("\"MB600/D\" is skipped")));
}

TEST(ReadList, SaysWhyThereIsNone)
{
    const TempDir dir;
    ASSERT_TRUE(base::ReplaceFile(dir.File("a.plc"), "hello\n"));

    EXPECT_THAT(ReadList(dir.File("a.plc")).Message(), HasSubstr("holds no operand"));
    EXPECT_THAT(ReadList("/nowhere/a.plc").Message(), HasSubstr("/nowhere/a.plc"));
}

TEST(ReadList, TakesTheListOfEverySampleMachineWhole)
{
    constexpr std::size_t rowsOfTheDebugger = 20;
    for (const samples::SampleMachine& machine : samples::SampleMachines()) {
        const std::string name(machine.name);

        const auto list = ReadList(ProjectFile("samples/" + name + '/' + name + ".plc"));

        ASSERT_TRUE(list) << list.Message();
        EXPECT_LE(list->variables.size(), rowsOfTheDebugger) << name;
        EXPECT_THAT(list->remarks, testing::IsEmpty()) << name;
    }
}

TEST(SecondsText, HasThreeDecimals)
{
    EXPECT_EQ(SecondsText(0ms), "0.000");
    EXPECT_EQ(SecondsText(12ms), "0.012");
    EXPECT_EQ(SecondsText(61234ms), "61.234");
}

TEST(TimeOfDay, HasAZone)
{
    EXPECT_THAT(
        base::TimeOfDay(std::chrono::system_clock::time_point(1700000000012ms)),
        MatchesRegex("2023-11-1[45]T[0-9:]+\\.012[+-][0-9]+"));
}

TEST(ValueJson, HasNullsBeforeTheFirstReading)
{
    EXPECT_EQ(
        ValueJson("1.234", {"MW 20"}),
        R"({"t": 1.234, "operand": "MW 20", "value": null, "raw": null, "age": null})");
    EXPECT_EQ(
        ValueJson("1.234", {"MW 20", "17", 17, 12ms}),
        R"({"t": 1.234, "operand": "MW 20", "value": "17", "raw": 17, "age": 0.012})");
}

TEST(LinkJson, HasStateAndReason)
{
    EXPECT_EQ(
        LinkJson("1.234", {plclink::LinkStatus::Lost, "no answer"}),
        R"({"t": 1.234, "link": "lost", "reason": "no answer"})");
}

TEST(Quoted, EscapesWhatJsonDoesNotAllow)
{
    EXPECT_EQ(Quoted("a\"b\\c\n\x1f ü"), R"("a\"b\\c\u000a\u001f ü")");
}

TEST(Table, AlignsItsColumns)
{
    EXPECT_THAT(
        Table(
            "soft:lift",
            {plclink::LinkStatus::Running},
            {{"MW 20", "17", 17, 12ms}, {"DB10.DBW 4"}},
            24),
        ElementsAre("soft:lift  running", "MW 20       17  0.012 s", "DB10.DBW 4  ? "));
}

TEST(Table, CountsWhatDoesNotFit)
{
    const std::vector<KnownValue> values(10, {"MW 20"});

    EXPECT_THAT(
        Table("soft:lift", {}, values, 4),
        ElementsAre("soft:lift  connecting", "MW 20  ?", "MW 20  ?", "... 8 more"));
}

} // namespace
} // namespace plcwatch
