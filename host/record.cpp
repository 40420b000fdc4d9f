#include "record.h"

#include <algorithm>
#include <array>

namespace plchost {

std::string OperandOf(const CMD_DATA& request)
{
    std::array<char, PLC_OPERAND_SIZE> name{};
    return {name.data(), PlcOperandOf(&request, name.data())};
}

std::optional<plc::StepRange> RequestedSteps(const CMD_DATA& request)
{
    if (PlcIsStop(&request)) {
        return std::nullopt;
    }
    return plc::StepRange{PlcFirstStep(&request), PlcLastStep(&request)};
}

bool IsAnswerable(const plc::StepRange& steps)
{
    const std::size_t count = plc::CountSteps(steps);
    return count > 0 && count <= PLC_MAX_STEPS;
}

CMD_DATA
MakeProgramStateAnswer(const plc::StepRange& steps, const std::vector<plc::StepState>& states)
{
    std::array<std::uint8_t, PLC_MAX_STEPS> results{};
    std::array<std::int32_t, PLC_MAX_STEPS> values{};
    const std::size_t count = std::min(states.size(), results.size());
    for (std::size_t i = 0; i < count; ++i) {
        results[i] = states[i].logicResult ? 1 : 0;
        values[i] = states[i].accumulator.value_or(PLC_NO_VALUE);
    }
    CMD_DATA answer =
        PlcMakePrgStateAnswer(1, static_cast<std::int32_t>(count), results.data(), values.data());
    PlcPutSteps(&answer, steps.first, steps.last);
    return answer;
}

plc::StepRange AnsweredSteps(const CMD_DATA& answer)
{
    return {PlcFirstStep(&answer), PlcLastStep(&answer)};
}

std::vector<plc::StepState> AnsweredStates(const CMD_DATA& answer)
{
    const plc::StepRange steps = AnsweredSteps(answer);
    const std::size_t count = plc::CountSteps(steps);
    if (!IsAnswerable(steps) || answer.length < PLC_STATES_AT + PLC_STEP_SIZE * count) {
        return {};
    }
    std::vector<plc::StepState> states;
    for (std::int64_t i = 0; i < static_cast<std::int64_t>(count); ++i) {
        const std::int32_t value = PlcStepValue(&answer, i);
        states.push_back(
            {PlcStepState(&answer, i) != 0,
             value == PLC_NO_VALUE ? std::nullopt : std::optional(value)});
    }
    return states;
}

} // namespace plchost
