#include "assembler.h"

#include "arguments.h"
#include "debug_file.h"
#include "file.h"
#include "source_line.h"

#include <algorithm>
#include <map>
#include <utility>
#include <variant>

namespace plc {

namespace {

/// Works through a source line by line; every line gets its step as it comes.
class Assembler
{
public:
    explicit Assembler(const std::string& file) : m_file(file) {}

    void AddLine(std::string_view text);
    Assembly Finish();

private:
    /// A name that an instruction refers to, looked up when everything is known.
    struct Reference
    {
        std::string name;
        std::size_t block; ///< Where the instruction stands.
        std::size_t line;
        std::size_t sourceLine;
        std::size_t column;
    };

    void AddError(std::size_t at, std::string message);
    void AddErrorAt(std::size_t sourceLine, std::size_t column, std::string message);
    void AddOutside(const SourceLine& line);
    void BeginBlock(const SourceLine& line);
    void EndBlock();
    void AddListingLine(const SourceLine& line);
    void AddLabel(const Word& label);
    void AddInstruction(const SourceLine& line, Line& listing);
    void AddArgument(const Instruction& instruction, const Word& argument, Line& listing);
    void AddReference(std::vector<Reference>& references, const Word& name);
    void AddOperand(unsigned arguments, const Word& argument, Line& listing);
    void CheckBrackets(const Word& mnemonic, Op op);
    void ResolveLabels();
    void ResolveCalls();

    const std::string& m_file;
    std::vector<SourceError> m_errors;
    Program m_program;
    std::string_view m_text; ///< The line under way.
    std::size_t m_sourceLine = 0;
    std::int32_t m_nextStep = firstProgramStep;
    bool m_inBlock = false;
    bool m_reportedOutside = false; ///< One message for all lines that belong to no block.
    std::vector<Word> m_openBrackets;
    std::map<std::string, std::size_t, std::less<>> m_labels; ///< Of the block under way.
    std::vector<Reference> m_jumps;                           ///< Of the block under way.
    std::map<std::string, std::size_t, std::less<>> m_blocks;
    std::vector<Reference> m_calls;
};

void Assembler::AddErrorAt(std::size_t sourceLine, std::size_t column, std::string message)
{
    m_errors.push_back({m_file, sourceLine, column, std::move(message)});
}

void Assembler::AddError(std::size_t at, std::string message)
{
    AddErrorAt(m_sourceLine, ColumnOf(m_text, at), std::move(message));
}

void Assembler::AddLine(std::string_view text)
{
    m_text = text;
    ++m_sourceLine;
    if (const auto bad = FindBadByte(text)) {
        AddError(bad->at, bad->message);
    }
    if (text.size() > maxLineBytes) {
        AddError(
            0,
            "the line has " + std::to_string(text.size()) + " bytes, the listing takes " +
                std::to_string(maxLineBytes));
    }
    const SourceLine line = SplitLine(text);
    if (line.mnemonic.text == "TITLE") {
        BeginBlock(line);
    } else if (m_inBlock) {
        AddListingLine(line);
    } else {
        AddOutside(line);
    }
}

void Assembler::AddOutside(const SourceLine& line)
{
    const bool isRemark = line.mnemonic.text.empty() && !line.hasLabel;
    if (isRemark || std::exchange(m_reportedOutside, true)) {
        return;
    }
    AddError(
        line.hasLabel ? line.label.at : line.mnemonic.at,
        "expected the beginning of a block such as 'PB10: TITLE Conveyor', found " +
            Quoted(line.hasLabel ? line.label.text : line.mnemonic.text));
}

void Assembler::BeginBlock(const SourceLine& line)
{
    const std::string name(line.label.text);
    if (m_inBlock) {
        AddError(
            line.mnemonic.at,
            "expected BE at the end of " + m_program.blocks.back().name + " first");
        EndBlock();
    }
    if (!IsBlockName(name)) {
        AddError(
            line.label.at,
            "expected the block's name before TITLE (OB1, PB0 to PB999 or FB0 to FB999, and a "
            "colon), " +
                Found(name));
    } else if (!m_blocks.emplace(name, m_program.blocks.size()).second) {
        AddError(line.label.at, "there are two blocks " + name);
    }
    if (m_nextStep > maxFirstStep) {
        AddError(
            line.label.at,
            "the first step of " + name + " is " + std::to_string(m_nextStep) +
                ", the debug file takes " + std::to_string(maxFirstStep) + " at most");
    }
    m_inBlock = true;
    m_reportedOutside = false;
    m_program.blocks.push_back({name, std::string(line.argument.text), m_nextStep, {}});
    AddListingLine({{}, line.mnemonic, line.argument, false});
}

void Assembler::EndBlock()
{
    ResolveLabels();
    for (const Word& bracket : m_openBrackets) {
        AddErrorAt(m_sourceLine, 1, "expected ')' for " + Quoted(bracket.text));
    }
    m_openBrackets.clear();
    m_inBlock = false;
}

void Assembler::AddListingLine(const SourceLine& line)
{
    Block& block = m_program.blocks.back();
    if (block.lines.size() == maxBlockLines) {
        AddError(0, block.name + " has more than " + std::to_string(maxBlockLines) + " lines");
    }
    Line listing;
    listing.text = m_text;
    if (IsExecutable(m_text)) {
        listing.step = m_nextStep++;
    }
    if (line.hasLabel) {
        AddLabel(line.label);
    }
    if (!line.mnemonic.text.empty()) {
        AddInstruction(line, listing);
    }
    const Op op = listing.op;
    block.lines.push_back(std::move(listing));
    if (op == Op::BlockEnd) {
        EndBlock();
    }
}

void Assembler::AddLabel(const Word& label)
{
    const std::size_t line = m_program.blocks.back().lines.size();
    if (!IsIdentifier(label.text)) {
        AddError(
            label.at,
            "expected a label of letters, digits and underscores before the colon, " +
                Found(label.text));
    } else if (IsBlockName(label.text)) {
        AddError(label.at, "expected TITLE after the name of block " + std::string(label.text));
    } else if (!m_labels.emplace(label.text, line).second) {
        AddError(label.at, "there are two labels " + Quoted(label.text) + " in this block");
    }
    if (!m_openBrackets.empty()) {
        AddError(label.at, "a label cannot stand between brackets");
    }
}

void Assembler::AddInstruction(const SourceLine& line, Line& listing)
{
    const Instruction* instruction = FindInstruction(line.mnemonic.text);
    if (!instruction) {
        AddError(line.mnemonic.at, "expected an instruction, " + Found(line.mnemonic.text));
        return;
    }
    listing.op = instruction->op;
    CheckBrackets(line.mnemonic, instruction->op);
    AddArgument(*instruction, line.argument, listing);
}

void Assembler::CheckBrackets(const Word& mnemonic, Op op)
{
    if (op >= Op::AndOpen && op <= Op::OrNotOpen) {
        if (m_openBrackets.size() == maxOpenBrackets) {
            AddError(
                mnemonic.at,
                "more than " + std::to_string(maxOpenBrackets) +
                    " brackets are open inside each other");
        }
        m_openBrackets.push_back(mnemonic);
    } else if (op == Op::Close) {
        if (m_openBrackets.empty()) {
            AddError(mnemonic.at, "')' without an open bracket");
        } else {
            m_openBrackets.pop_back();
        }
    } else if (TransfersControl(op) && !m_openBrackets.empty()) {
        AddError(mnemonic.at, Quoted(mnemonic.text) + " cannot stand between brackets");
        m_openBrackets.clear();
    }
}

void Assembler::AddArgument(const Instruction& instruction, const Word& argument, Line& listing)
{
    const unsigned takes = instruction.arguments;
    if (takes == takesText) {
        return;
    }
    if (takes == takesNothing) {
        if (!argument.text.empty()) {
            AddError(
                argument.at,
                "expected nothing after " + Quoted(instruction.mnemonic) + ", " +
                    Found(argument.text));
        }
        return;
    }
    if (argument.text.empty()) {
        AddError(m_text.size(), "expected " + ExpectedArguments(takes) + ", " + Found(""));
        return;
    }
    if (takes == takesLabel) {
        AddReference(m_jumps, argument);
    } else if (takes == takesBlock) {
        AddReference(m_calls, argument);
    } else {
        AddOperand(takes, argument, listing);
    }
}

void Assembler::AddReference(std::vector<Reference>& references, const Word& name)
{
    const std::size_t block = m_program.blocks.size() - 1;
    references.push_back(
        {std::string(name.text),
         block,
         m_program.blocks[block].lines.size(),
         m_sourceLine,
         ColumnOf(m_text, name.at)});
}

void Assembler::AddOperand(unsigned arguments, const Word& argument, Line& listing)
{
    const auto read = ReadArgument(arguments, argument.text);
    if (!read) {
        AddError(argument.at, read.Message());
    } else if (const auto* operand = std::get_if<Operand>(&*read)) {
        listing.operand = *operand;
    } else {
        listing.op = Op::LoadConstant;
        listing.number = std::get<std::uint32_t>(*read);
    }
}

void Assembler::ResolveLabels()
{
    Block& block = m_program.blocks.back();
    for (const Reference& jump : m_jumps) {
        const auto label = m_labels.find(jump.name);
        if (label == m_labels.end()) {
            AddErrorAt(
                jump.sourceLine,
                jump.column,
                "there is no label " + Quoted(jump.name) + " in " + block.name);
        } else {
            block.lines[jump.line].number = static_cast<std::uint32_t>(label->second);
        }
    }
    m_jumps.clear();
    m_labels.clear();
}

void Assembler::ResolveCalls()
{
    for (const Reference& call : m_calls) {
        const auto block = m_blocks.find(call.name);
        if (block == m_blocks.end()) {
            AddErrorAt(call.sourceLine, call.column, "there is no block " + Quoted(call.name));
        } else {
            m_program.blocks[call.block].lines[call.line].number =
                static_cast<std::uint32_t>(block->second);
        }
    }
}

Assembly Assembler::Finish()
{
    if (m_inBlock) {
        AddErrorAt(m_sourceLine, 1, "expected BE at the end of " + m_program.blocks.back().name);
        EndBlock();
    }
    ResolveCalls();
    const auto entry = m_blocks.find("OB1");
    if (entry == m_blocks.end()) {
        AddErrorAt(std::max<std::size_t>(m_sourceLine, 1), 1, "there is no cyclic block OB1");
    } else {
        m_program.entry = entry->second;
    }
    if (m_errors.empty()) {
        return {std::move(m_program), {}};
    }
    std::stable_sort(m_errors.begin(), m_errors.end(), [](const auto& a, const auto& b) {
        return std::pair(a.line, a.column) < std::pair(b.line, b.column);
    });
    return {std::nullopt, std::move(m_errors)};
}

} // namespace

std::string ErrorText(const SourceError& error)
{
    return error.file + ":" + std::to_string(error.line) + ":" + std::to_string(error.column) +
           ": " + error.message;
}

Assembly Assemble(std::string_view source, const std::string& file)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (source.substr(0, byteOrderMark.size()) == byteOrderMark) {
        source.remove_prefix(byteOrderMark.size());
    }
    Assembler assembler(file);
    while (!source.empty()) {
        const std::size_t end = std::min(source.find('\n'), source.size());
        std::string_view line = source.substr(0, end);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        assembler.AddLine(line);
        source.remove_prefix(std::min(end + 1, source.size()));
    }
    return assembler.Finish();
}

Assembly AssembleFile(const std::string& path)
{
    const auto source = base::ReadFile(path);
    if (!source) {
        return {std::nullopt, {{path, 0, 0, source.Message()}}};
    }
    return Assemble(*source, path);
}

} // namespace plc
