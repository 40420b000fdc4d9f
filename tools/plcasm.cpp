#include "assembler.h"
#include "debug_file.h"

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

// plcasm SOURCE -o PREFIX: checks a statement list and writes its program debug file.

namespace {

constexpr std::string_view usage =
    "Usage: plcasm SOURCE [-o PREFIX]\n"
    "Checks the statement list SOURCE and writes its listing to PREFIX_plcdbgi.dat, the program\n"
    "debug file that the debugger's program page reads. Without -o it only checks.\n"
    "Each error is reported as FILE:LINE:COLUMN: MESSAGE; nothing is written then.\n"
    "A host assembles the source itself; there is no other output.\n"
    "Exit status: 0 done, 1 errors in the source, 2 wrong usage, 3 cannot write.\n";

enum ExitStatus
{
    exitDone = 0,
    exitSourceErrors = 1,
    exitUsage = 2,
    exitCannotWrite = 3
};

struct Options
{
    std::string source;
    std::string prefix; ///< Empty: check only.
    bool isHelp = false;
    bool isValid = true;
};

Options ParseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "-h" || argument == "--help") {
            options.isHelp = true;
        } else if (argument == "-o" && i + 1 < arguments.size()) {
            options.prefix = arguments[++i];
        } else if (argument.rfind('-', 0) == 0 || !options.source.empty()) {
            options.isValid = false;
        } else {
            options.source = argument;
        }
    }
    options.isValid = options.isValid && (options.isHelp || !options.source.empty());
    return options;
}

std::size_t CountLines(const plc::Program& program)
{
    std::size_t lines = 0;
    for (const plc::Block& block : program.blocks) {
        lines += block.lines.size();
    }
    return lines;
}

ExitStatus Assemble(const Options& options)
{
    const plc::Assembly assembly = plc::AssembleFile(options.source);
    for (const plc::SourceError& error : assembly.errors) {
        std::cerr << plc::ErrorText(error) << '\n';
    }
    if (!assembly.program) {
        return exitSourceErrors;
    }
    if (options.prefix.empty()) {
        return exitDone;
    }
    if (const auto written = plc::WriteDebugFile(*assembly.program, options.prefix); !written) {
        std::cerr << "plcasm: " << written.Message() << '\n';
        return exitCannotWrite;
    }
    std::cout << options.prefix << plc::debugFileSuffix << ": blocks "
              << assembly.program->blocks.size() << ", lines " << CountLines(*assembly.program)
              << '\n';
    return exitDone;
}

} // namespace

int main(int argc, char* argv[])
{
    const Options options = ParseOptions({argv + 1, argv + argc});
    if (!options.isValid || options.isHelp) {
        (options.isHelp ? std::cout : std::cerr) << usage;
        return options.isHelp ? exitDone : exitUsage;
    }
    return Assemble(options);
}
