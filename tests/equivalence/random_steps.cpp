#include "random_steps.h"

#include "command_line.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <cstdlib>

int Dice::Below(int below)
{
    return below <= 0 ? 0 : static_cast<int>(m_engine() % static_cast<unsigned>(below));
}

std::int32_t Dice::Value()
{
    constexpr int few = 12;
    switch (Below(4)) {
    case 0:
        return static_cast<std::int32_t>(m_engine());
    case 1:
        return Below(2) == 0 ? -1 : 0x7FFFFFFF;
    default:
        return Below(few) - 2;
    }
}

StepOptions ReadStepOptions(int argc, char** argv)
{
    StepOptions options;
    CLI::App app{"Compares the product with the same taken literally, in random steps.", argv[0]};
    app.add_option("--steps", options.steps, "how many, else 10000");
    app.add_option("--seed", options.seed, "which ones, else 1");
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        std::exit(*ended);
    }
    return options;
}

bool IsLargeRun(int run)
{
    constexpr int runsForALargeOne = 1000;
    return run % runsForALargeOne == 1; // so that also a short test has one
}

void RequireAgreement(bool same, const StepOptions& options, int step, const std::string& what)
{
    if (!same) {
        std::fprintf(
            stderr,
            "%s: product and reference differ in step %d; again with --seed %u --steps %d\n",
            what.c_str(),
            step,
            options.seed,
            step + 1);
        std::exit(EXIT_FAILURE);
    }
}

std::string RandomLine(Dice& dice)
{
    static constexpr std::array<const char*, 10> texts = {
        "M1: U E 1.0",
        ":NETWORK 3",
        ": O M 2.1",
        "NOP 0",
        "NOP: = A 4.0",
        ": L MW 20 // TITLE",
        ": T MD\t4",
        "",
        ":BLD 130",
        ": SPA M\xFC"};
    constexpr int longLine = 300;
    if (dice.OneIn(50)) {
        std::string line(static_cast<std::size_t>(dice.Below(longLine)), 'x');
        return line;
    }
    return texts[static_cast<std::size_t>(dice.Below(static_cast<int>(texts.size())))];
}
