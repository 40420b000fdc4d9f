#pragma once

#include "assembler.h"
#include "interpreter.h"
#include "process.h"
#include "projectfile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A program without a controller: the test itself lets the cycles run, each as long as it says.

namespace plctest {

/// All error lines of an assembly, for messages.
inline std::string Errors(const plc::Assembly& assembly)
{
    std::string text;
    for (const plc::SourceError& error : assembly.errors) {
        text += plc::ErrorText(error) + "\n";
    }
    return text;
}

/// @throws std::invalid_argument with all errors of the source.
inline plc::Program Assembled(plc::Assembly assembly)
{
    if (!assembly.program) {
        throw std::invalid_argument(Errors(assembly));
    }
    return std::move(*assembly.program);
}

/// The lines of @p body as the cyclic block.
inline std::string CyclicBlock(const std::string& body)
{
    return "OB1: TITLE Test\n" + body + "\nBE\n";
}

class Machine
{
public:
    explicit Machine(plc::Program program, std::chrono::milliseconds limit = plc::defaultCycleLimit)
        : m_program(plc::MakeInterpreter(std::move(program), limit))
    {
    }

    /// Of the cyclic block alone.
    explicit Machine(const std::string& body)
        : Machine(Assembled(plc::Assemble(CyclicBlock(body), "test.il")))
    {
    }

    /// A sample with its process.
    Machine(const std::string& file, std::unique_ptr<plc::Process> process)
        : m_program(
              plc::MakeInterpreter(Assembled(plc::AssembleFile(ProjectFile("samples/" + file))))),
          m_process(std::move(process))
    {
        m_process->PowerOn(image);
    }

    std::optional<plc::StopReason> Cycle(std::chrono::milliseconds elapsed = plc::timerUnit)
    {
        if (m_process) {
            plc::MoveOn(*m_process, image, elapsed);
        }
        return m_program->RunCycle(image, elapsed);
    }

    /// Runs for this simulated time in cycles of 10 ms; a stop is a failure.
    void Run(std::chrono::milliseconds time)
    {
        RunUntil(time, [] { return false; });
    }

    /// Runs until @p condition holds, for this simulated time at most.
    /// @return whether it came to hold.
    template <typename Condition> bool RunUntil(std::chrono::milliseconds time, Condition condition)
    {
        for (std::chrono::milliseconds now{0}; now < time; now += plc::timerUnit) {
            if (const auto stop = Cycle()) {
                ADD_FAILURE() << plc::StopText(*stop);
                return false;
            }
            if (condition()) {
                return true;
            }
        }
        return false;
    }

    std::uint32_t Read(std::string_view name) const { return image.Read(plc::Image::CellOf(name)); }

    bool IsOn(std::string_view name) const { return image.IsOn(plc::Image::CellOf(name)); }

    void Write(std::string_view name, std::uint32_t value)
    {
        image.Write(plc::Image::CellOf(name), value);
    }

    /// Presses a button for a tenth of a second.
    void Press(std::string_view button)
    {
        const std::uint32_t released = Read(button);
        Write(button, 1 - released);
        Run(std::chrono::milliseconds{100});
        Write(button, released);
        Run(std::chrono::milliseconds{100});
    }

    bool Watch(std::int32_t first, std::int32_t last)
    {
        return m_program->Watch(plc::StepRange{first, last});
    }

    void StopWatching() { m_program->Watch(std::nullopt); }

    const std::vector<plc::StepState>& States() const { return m_program->WatchedStates(); }

    plc::Image image;

private:
    std::unique_ptr<plc::CyclicProgram> m_program;
    std::unique_ptr<plc::Process> m_process; ///< May be null.
};

/// The logic result of @p body with these inputs in EB0.
inline bool ResultOf(const std::string& body, std::uint32_t inputs)
{
    Machine machine(body + "\n= A0.0");
    machine.Write("EB0", inputs);
    EXPECT_FALSE(machine.Cycle());
    return machine.IsOn("A0.0");
}

} // namespace plctest
