#include "steps.h"

namespace plc {

std::size_t CountSteps(const StepRange& steps)
{
    if (steps.last < steps.first) {
        return 0;
    }
    return static_cast<std::size_t>(std::int64_t{steps.last} - steps.first) + 1;
}

bool operator==(const StepState& a, const StepState& b)
{
    return a.logicResult == b.logicResult && a.accumulator == b.accumulator;
}

} // namespace plc
