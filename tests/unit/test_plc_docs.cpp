#include "projectfile.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

// The description of the language holds what the instruction table says.

namespace {

std::vector<std::string> DocumentLines()
{
    std::ifstream in(ProjectFile("docs/statement-list.md"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    EXPECT_FALSE(lines.empty());
    return lines;
}

/// The words between backticks.
std::vector<std::string> CodeWords(const std::string& cell)
{
    std::vector<std::string> words;
    for (std::size_t begin = cell.find('`'); begin != std::string::npos;) {
        const std::size_t end = cell.find('`', begin + 1);
        words.push_back(cell.substr(begin + 1, end - begin - 1));
        begin = cell.find('`', end + 1);
    }
    return words;
}

/// The kinds of operands that a table cell names.
unsigned ArgumentsIn(const std::string& cell)
{
    const std::pair<const char*, unsigned> kinds[] = {
        {"bit", plc::takesBit},
        {"byte, word, double word", plc::takesNumber},
        {"timer", plc::takesTimer},
        {"counter", plc::takesCounter},
        {"constant", plc::takesConstant},
        {"label", plc::takesLabel},
        {"block", plc::takesBlock},
        {"text", plc::takesText}};
    unsigned arguments = plc::takesNothing;
    for (const auto& [word, kind] : kinds) {
        if (cell.find(word) != std::string::npos) {
            arguments |= kind;
        }
    }
    return arguments;
}

/// What the tables say each instruction takes; some stand in two tables.
std::map<std::string, unsigned> DescribedInstructions()
{
    std::map<std::string, unsigned> described;
    for (const std::string& line : DocumentLines()) {
        if (line.rfind("| `", 0) != 0) {
            continue;
        }
        const std::size_t bar = line.find('|', 1);
        const std::string operands = line.substr(bar + 1, line.find('|', bar + 1) - bar - 1);
        for (const std::string& word : CodeWords(line.substr(0, bar))) {
            described[word] |= ArgumentsIn(operands);
        }
    }
    return described;
}

/// The indented pieces of program, each with a cyclic block.
std::vector<std::string> Examples()
{
    std::vector<std::string> examples;
    bool isInside = false;
    for (const std::string& line : DocumentLines()) {
        const bool isCode = line.rfind("    ", 0) == 0;
        if (isCode && !isInside) {
            examples.emplace_back();
        }
        if (isCode) {
            examples.back() += line.substr(4) + "\n";
        }
        isInside = isCode;
    }
    for (std::string& example : examples) {
        const bool isBlock = example.find("TITLE") != std::string::npos;
        if (isBlock) {
            example += plctest::CyclicBlock("");
        } else {
            example = plctest::CyclicBlock(example);
        }
    }
    return examples;
}

TEST(Documentation, DescribesEveryInstructionWithItsOperands)
{
    std::map<std::string, unsigned> known;
    for (const plc::Instruction& instruction : plc::Instructions()) {
        known.emplace(instruction.mnemonic, instruction.arguments);
    }

    EXPECT_EQ(DescribedInstructions(), known);
}

TEST(Documentation, ItsExamplesAreProper)
{
    auto examples = Examples();
    ASSERT_GE(examples.size(), 4U);
    EXPECT_NE(examples[0].find("LABEL: MNEMONIC"), std::string::npos) << "the form of a line";
    examples.erase(examples.begin());

    for (const std::string& example : examples) {
        EXPECT_EQ(plctest::Errors(plc::Assemble(example, "example")), "") << example;
    }
}

} // namespace
