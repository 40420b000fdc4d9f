#include "assembler.h"
#include "command_line.h"
#include "debug_file.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>

// plcasm SOURCE -o PREFIX: checks a statement list and writes its program debug file.

namespace {

constexpr const char* description =
    "Checks a statement list and writes its listing to PREFIX_plcdbgi.dat, the program debug file\n"
    "that the debugger's program page reads. Each error is reported as FILE:LINE:COLUMN: MESSAGE;\n"
    "nothing is written then. A host assembles the source itself; there is no other output.";

constexpr const char* exitStatuses = R"(
Exit status:
  0  done
  1  errors in the source
  2  the command line is wrong
  3  cannot write)";

enum ExitStatus
{
    exitDone = 0,
    exitSourceErrors = 1,
    exitCannotWrite = 3
};

struct Options
{
    std::string source;
    std::string prefix; ///< Empty: check only.
};

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
        base::Tell("plcasm", written.Message());
        return exitCannotWrite;
    }
    std::cout << options.prefix << plc::debugFileSuffix << ": blocks "
              << assembly.program->blocks.size() << ", lines " << CountLines(*assembly.program)
              << '\n';
    return exitDone;
}

int Main(int argc, char** argv)
{
    Options options;
    CLI::App app{description, "plcasm"};
    app.footer(exitStatuses);
    app.add_option("SOURCE", options.source, "the statement list (*.il)")
        ->type_name("")
        ->required();
    app.add_option("-o", options.prefix, "write the debug file of this prefix; else only check")
        ->type_name("PREFIX");
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return *ended;
    }
    return Assemble(options);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return Main(argc, argv);
    } catch (const std::exception& error) {
        base::Tell("plcasm", error.what());
        return exitCannotWrite;
    }
}
