#include "assembler.h"
#include "debug_file.h"
#include "fuzz.h"
#include "interpreter.h"

#include <chrono>

// A statement list: errors or a program; a program runs, or stops with a reason, and has a debug
// file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace std::chrono_literals;
    plc::Assembly assembly = plc::Assemble(Text(data, size), "fuzz.il");
    Require(assembly.program.has_value() == assembly.errors.empty(), "a program or errors");
    for (const plc::SourceError& error : assembly.errors) {
        Require(error.line > 0 && error.column > 0, "an error has a place");
        Require(!plc::ErrorText(error).empty(), "an error has a text");
    }
    if (!assembly.program) {
        return 0;
    }

    Require(static_cast<bool>(plc::DebugFileOf(*assembly.program)), "a program has a debug file");
    plc::Image image;
    const auto program = plc::MakeInterpreter(std::move(*assembly.program), 2ms);
    program->Watch(plc::StepRange{plc::firstProgramStep, plc::firstProgramStep + 97});
    constexpr int cycles = 3;
    for (int cycle = 0; cycle < cycles; ++cycle) {
        if (const auto reason = program->RunCycle(image, 10ms)) {
            Require(!plc::StopText(*reason).empty(), "a stop has a reason");
            break;
        }
    }
    Require(program->WatchedStates().size() == 98, "every watched step has a state");
    return 0;
}
