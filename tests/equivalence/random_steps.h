#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>

// Random runs of two implementations side by side, which a seed replays. One thread at a time.

/// Draws what happens next.
class Dice
{
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}

    /// @return 0 to @p below - 1; 0 when that is not positive.
    int Below(int below);

    /// @return true once in so many times.
    bool OneIn(int times) { return Below(times) == 0; }

    /// @return a value as controllers have them: often small, often equal, sometimes any.
    std::int32_t Value();

private:
    std::mt19937 m_engine;
};

constexpr int usualSteps = 10000;

/// "--steps N --seed N" of a command line.
struct StepOptions
{
    int steps = usualSteps;
    unsigned seed = 1;
};

/// Ends the program when the command line is wrong or asks for help.
StepOptions ReadStepOptions(int argc, char** argv);

/// Steps belong together in runs of so many; the first of a run begins with another block or list.
constexpr int stepsOfARun = 100;

/// @return true for the one run in a thousand that is on the largest block.
bool IsLargeRun(int run);

/// Ends the program with a message that tells how to come here again, unless both sides agree.
void RequireAgreement(bool same, const StepOptions& options, int step, const std::string& what);

/// A listing line, executable or not.
std::string RandomLine(Dice& dice);
