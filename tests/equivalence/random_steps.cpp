#include "random_steps.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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
    for (int i = 1; i < argc; i += 2) {
        const bool hasValue = i + 1 < argc;
        if (hasValue && std::strcmp(argv[i], "--steps") == 0) {
            options.steps = std::atoi(argv[i + 1]);
        } else if (hasValue && std::strcmp(argv[i], "--seed") == 0) {
            options.seed = static_cast<unsigned>(std::strtoul(argv[i + 1], nullptr, 10));
        } else {
            std::fprintf(stderr, "usage: %s [--steps N] [--seed N]\n", argv[0]);
            std::exit(2);
        }
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
