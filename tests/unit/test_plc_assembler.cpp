#include "assembler.h"
#include "projectfile.h"
#include "test_plc_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

using plc::Assemble;
using plc::Op;
using plctest::CyclicBlock;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> ErrorsOf(const std::string& source)
{
    const auto assembly = Assemble(source, "a.il");
    EXPECT_EQ(assembly.program.has_value(), assembly.errors.empty());
    std::vector<std::string> texts;
    for (const auto& error : assembly.errors) {
        texts.push_back(plc::ErrorText(error));
    }
    return texts;
}

/// Errors of lines inside a cyclic block; its first line is line 2.
std::vector<std::string> BodyErrors(const std::string& body)
{
    return ErrorsOf(CyclicBlock(body));
}

std::vector<std::int32_t> StepsOf(const plc::Block& block)
{
    std::vector<std::int32_t> steps;
    for (const plc::Line& line : block.lines) {
        steps.push_back(line.step);
    }
    return steps;
}

std::string Lines(std::size_t count, const std::string& line)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += line + "\n";
    }
    return text;
}

TEST(Assemble, AListingReachesFromTitleToEnd)
{
    const auto program = plctest::Assembled(
        Assemble("// head\n\nOB1: TITLE Main block\n U E0.0\n = A0.0\n BE\n// tail\n", "a.il"));

    ASSERT_EQ(program.blocks.size(), 1U);
    const plc::Block& block = program.blocks[0];
    EXPECT_EQ(block.name, "OB1");
    EXPECT_EQ(block.title, "Main block");
    ASSERT_EQ(block.lines.size(), 4U);
    EXPECT_EQ(block.lines[0].text, "OB1: TITLE Main block");
    EXPECT_EQ(block.lines[1].op, Op::And);
    EXPECT_EQ(plc::OperandName(block.lines[1].operand), "E0.0");
    EXPECT_EQ(block.lines[3].op, Op::BlockEnd);
}

TEST(Assemble, StepsRunThroughTheWholeProgram)
{
    const auto program = plctest::Assembled(
        Assemble("PB1: TITLE One\n U E0.0\n BE\nOB1: TITLE\n BA PB1\n\n BE\n", "a.il"));

    EXPECT_THAT(StepsOf(program.blocks[0]), ElementsAre(plc::noStep, 1, 2));
    EXPECT_EQ(program.blocks[1].firstStep, 3);
    EXPECT_THAT(StepsOf(program.blocks[1]), ElementsAre(plc::noStep, 3, 4, 5));
    EXPECT_EQ(program.entry, 1U);
}

TEST(Assemble, LinesWithoutInstructionHaveStepsAndSomeInstructionsHaveNone)
{
    const auto program = plctest::Assembled(Assemble(
        CyclicBlock("// remark\n\nLAB:\n NETWORK 1\n NOP 0\n BLD 255\n U E0.0 // no NOP\n"
                    "// NOP: here\nNOP1: U E0.0\n SPA NOP1"),
        "a.il"));

    EXPECT_THAT(StepsOf(program.blocks[0]), ElementsAre(-1, 1, 2, 3, -1, -1, -1, -1, 4, 5, -1, 6));
    EXPECT_EQ(program.blocks[0].lines[7].op, Op::And);
}

TEST(Assemble, TakesWindowsLineEndsAByteOrderMarkAndAMissingLastLineEnd)
{
    const auto program =
        plctest::Assembled(Assemble("\xEF\xBB\xBFOB1: TITLE x\r\n U E0.0\r\n BE", "a.il"));

    EXPECT_EQ(program.blocks[0].lines[0].text, "OB1: TITLE x");
    EXPECT_EQ(program.blocks[0].lines[1].text, " U E0.0");
    EXPECT_EQ(program.blocks[0].lines[2].text, " BE");
}

TEST(Assemble, BlanksMayStandInAnOperand)
{
    EXPECT_THAT(BodyErrors("U E 0.0\nL DB10.DBW 4\nT MW\t20\nL - 5"), IsEmpty());
}

TEST(Assemble, LabelsBelongToTheirBlock)
{
    const std::string block = ": TITLE\nEND: U E0.0\n SPB END\n BE\n";

    const auto program = plctest::Assembled(Assemble("OB1" + block + "PB1" + block, "a.il"));

    EXPECT_EQ(program.blocks[1].lines[2].number, 1U);
}

TEST(Assemble, ALaterBlockMayBeCalled)
{
    const auto program =
        plctest::Assembled(Assemble("OB1: TITLE\n BA FB7\n BE\nFB7: TITLE\n BE\n", "a.il"));

    EXPECT_EQ(program.blocks[0].lines[1].number, 1U);
}

TEST(AssembleErrors, NameFileLineColumnAndWhatWasExpected)
{
    EXPECT_THAT(
        BodyErrors(" = EB10"),
        ElementsAre("a.il:2:4: expected a bit such as M10.0 or DB10.DBX4.0, found 'EB10'"));
    EXPECT_THAT(
        BodyErrors("// ü\n/* ü */ U"), ElementsAre(HasSubstr("a.il:3:1: expected an instruction")));
}

TEST(AssembleErrors, AreAllListedInOrder)
{
    EXPECT_THAT(
        BodyErrors("u E0.0\nU E64.0\nSPA NO\nL 99999999999\nBA PB9"),
        ElementsAre(
            "a.il:2:1: expected an instruction, found 'u'",
            "a.il:3:3: E64.0 does not exist: the last byte of this area is 63",
            "a.il:4:5: there is no label 'NO' in OB1",
            "a.il:5:3: the number is not between -2147483648 and 2147483647, "
            "found '99999999999'",
            "a.il:6:4: there is no block 'PB9'"));
}

TEST(AssembleErrors, OperandsOfTheWrongKindAndMissingOnes)
{
    EXPECT_THAT(BodyErrors("U MW4"), ElementsAre(HasSubstr("or a timer such as T5")));
    EXPECT_THAT(BodyErrors("T T5"), ElementsAre(HasSubstr("a byte, word or double word")));
    EXPECT_THAT(BodyErrors("T 5"), ElementsAre(HasSubstr("a byte, word or double word")));
    EXPECT_THAT(BodyErrors("SI Z1"), ElementsAre(HasSubstr("expected a timer such as T5, found")));
    EXPECT_THAT(BodyErrors("ZV T1"), ElementsAre(HasSubstr("expected a counter such as Z12")));
    EXPECT_THAT(BodyErrors("= T1"), ElementsAre(HasSubstr("expected a bit")));
    EXPECT_THAT(BodyErrors("L M1.0"), ElementsAre(HasSubstr("found 'M1.0'")));
    EXPECT_THAT(
        BodyErrors("L"), ElementsAre(AllOf(HasSubstr(":2:2:"), HasSubstr("the end of the line"))));
    EXPECT_THAT(BodyErrors("+I 5"), ElementsAre(HasSubstr("expected nothing after '+I'")));
}

TEST(AssembleErrors, OperandsThatDoNotExist)
{
    EXPECT_THAT(BodyErrors("L DB5.DBW0"), ElementsAre(HasSubstr("there is no data block 5")));
    EXPECT_THAT(
        BodyErrors("L DB4.DBW16"), ElementsAre(HasSubstr("the last byte of this area is 16")));
    EXPECT_THAT(
        BodyErrors("SI T128"), ElementsAre(HasSubstr("the last number of this area is 127")));
    EXPECT_THAT(BodyErrors("U M0.8"), ElementsAre(HasSubstr("found 'M0.8'")));
}

TEST(AssembleErrors, Labels)
{
    EXPECT_THAT(
        BodyErrors("A: U E0.0\nA: U E0.1"),
        ElementsAre("a.il:3:1: there are two labels 'A' in this block"));
    EXPECT_THAT(BodyErrors("1A: U E0.0"), ElementsAre(HasSubstr("expected a label of letters")));
    EXPECT_THAT(BodyErrors(": U E0.0"), ElementsAre(HasSubstr("found the end of the line")));
    EXPECT_THAT(BodyErrors("PB1: U E0.0"), ElementsAre(HasSubstr("expected TITLE after the name")));
    EXPECT_THAT(
        BodyErrors("NETWORK 3: belt"),
        ElementsAre(
            HasSubstr("expected a label of letters"),
            HasSubstr("expected an instruction, found 'belt'")));
}

TEST(AssembleErrors, Blocks)
{
    EXPECT_THAT(ErrorsOf(""), ElementsAre("a.il:1:1: there is no cyclic block OB1"));
    EXPECT_THAT(
        ErrorsOf("PB1: TITLE\n BE\n"), ElementsAre("a.il:2:1: there is no cyclic block OB1"));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n U E0.0\n"), ElementsAre("a.il:2:1: expected BE at the end of OB1"));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n U E0.0\nPB1: TITLE\n BE\n"),
        ElementsAre("a.il:3:6: expected BE at the end of OB1 first"));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n BE\nOB1: TITLE\n BE\n"),
        ElementsAre("a.il:3:1: there are two blocks OB1"));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n BE\nTITLE x\n BE\n"),
        ElementsAre(HasSubstr("expected the block's name before TITLE")));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n BE\nOB2: TITLE\n BE\n"), ElementsAre(HasSubstr("found 'OB2'")));
}

TEST(AssembleErrors, LinesOutsideOfBlocksAreReportedOncePerGap)
{
    EXPECT_THAT(
        ErrorsOf(" U E0.0\n = A0.0\n// remark\nOB1: TITLE\n BE\nX: U E0.0\n"),
        ElementsAre(
            "a.il:1:2: expected the beginning of a block such as 'PB10: TITLE Conveyor', "
            "found 'U'",
            HasSubstr("a.il:6:1:")));
}

TEST(AssembleErrors, Brackets)
{
    EXPECT_THAT(BodyErrors("U(\n U E0.0\n)\n)"), ElementsAre(HasSubstr("a.il:5:1: ')' without")));
    EXPECT_THAT(
        BodyErrors("U(\n U E0.0"), ElementsAre("a.il:4:1: 'BE' cannot stand between brackets"));
    EXPECT_THAT(
        BodyErrors("O(\nX: U E0.0\n)"),
        ElementsAre("a.il:3:1: a label cannot stand between brackets"));
    EXPECT_THAT(
        BodyErrors("X: U(\n SPB X\n U E0.0"),
        ElementsAre("a.il:3:2: 'SPB' cannot stand between brackets"));
    EXPECT_THAT(
        ErrorsOf("OB1: TITLE\n U(\n"),
        ElementsAre(HasSubstr("expected BE"), HasSubstr("expected ')' for 'U('")));
}

TEST(AssembleErrors, EightBracketsMayBeOpenInsideEachOther)
{
    EXPECT_THAT(BodyErrors(Lines(8, "U(") + "U E0.0\n" + Lines(8, ")")), IsEmpty());
    EXPECT_THAT(
        BodyErrors(Lines(9, "U(") + "U E0.0\n" + Lines(9, ")")),
        ElementsAre("a.il:10:1: more than 8 brackets are open inside each other"));
}

TEST(AssembleErrors, ALineFitsTheListing)
{
    const std::string start = "U E0.0 // ";

    EXPECT_THAT(BodyErrors(start + std::string(254 - start.size(), 'x')), IsEmpty());
    EXPECT_THAT(
        BodyErrors(start + std::string(255 - start.size(), 'x')),
        ElementsAre("a.il:2:1: the line has 255 bytes, the listing takes 254"));
}

TEST(AssembleErrors, BytesThatNoListingShows)
{
    using namespace std::string_literals;

    EXPECT_THAT(BodyErrors("// a\0b"s), ElementsAre(HasSubstr("a.il:2:5: a control character")));
    EXPECT_THAT(BodyErrors("// F\xFCll"), ElementsAre(HasSubstr("a.il:2:5: expected a character")));
}

TEST(AssembleErrors, ABlockTakes65535Lines)
{
    EXPECT_THAT(BodyErrors(Lines(65532, "U E0.0") + "U E0.0"), IsEmpty());
    EXPECT_THAT(
        BodyErrors(Lines(65533, "U E0.0") + "U E0.0"),
        ElementsAre("a.il:65536:1: OB1 has more than 65535 lines"));
}

TEST(AssembleErrors, AFirstStepFits16Bits)
{
    const std::string rest = "FB1: TITLE\n BE\n";
    const auto first = [](std::size_t steps) {
        return "OB1: TITLE\n" + Lines(65533, "U E0.0") + "BE\nPB1: TITLE\n" +
               Lines(steps - 65535, "U E0.0") + "BE\n";
    };

    EXPECT_THAT(ErrorsOf("OB1: TITLE\n" + Lines(65533, "U E0.0") + "BE\n" + rest), IsEmpty())
        << "the first step of FB1 is 65535";
    EXPECT_THAT(
        ErrorsOf(first(65535) + rest),
        ElementsAre("a.il:65538:1: the first step of FB1 is 65536, the debug file takes 65535 at "
                    "most"));
    EXPECT_THAT(ErrorsOf(first(70000)), IsEmpty()) << "only first steps have to fit";
}

TEST(AssembleFile, NamesAFileThatCannotBeRead)
{
    const auto assembly = plc::AssembleFile("/no/such/file.il");

    ASSERT_EQ(assembly.errors.size(), 1U);
    EXPECT_EQ(
        plc::ErrorText(assembly.errors[0]),
        "/no/such/file.il:0:0: cannot read \"/no/such/file.il\": No such file or directory");
    EXPECT_FALSE(assembly.program);
}

TEST(AssembleFile, AFolderIsNoSource)
{
    EXPECT_FALSE(plc::AssembleFile(ProjectFile("")).program);
}

} // namespace
