#include "record.h"

#include <algorithm>
#include <cstring>
#include <limits>

// Records are little-endian, and so is every machine that the library is built for.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

namespace plchost {

namespace {

// Offsets from the start of the record.
constexpr std::size_t readOperandAt = 6;
constexpr std::size_t writeValueAt = 6;
constexpr std::size_t writeOperandAt = 10;
constexpr std::size_t deleteArgumentAt = 6;
constexpr std::size_t answerValueAt = 6;
constexpr std::size_t firstStepAt = 6;
constexpr std::size_t lastStepAt = 10;
constexpr std::size_t statesAt = 14;
constexpr std::size_t bytesPerState = 1 + sizeof(std::int32_t);

template <typename Number> Number NumberAt(const CMD_DATA& record, std::size_t offset)
{
    Number number{};
    std::memcpy(&number, &record.payload[offset - PLC_CMD_HEADER_SIZE], sizeof number);
    return number;
}

template <typename Number> void PutNumber(CMD_DATA& record, std::size_t offset, Number number)
{
    std::memcpy(&record.payload[offset - PLC_CMD_HEADER_SIZE], &number, sizeof number);
}

std::string TextAt(const CMD_DATA& record, std::size_t offset)
{
    const std::uint8_t* const first = &record.payload[offset - PLC_CMD_HEADER_SIZE];
    const std::uint8_t* const end = std::end(record.payload);
    return {first, std::find(first, end, 0)};
}

std::uint16_t Length(std::size_t length)
{
    return static_cast<std::uint16_t>(length);
}

} // namespace

std::string ReadOperand(const CMD_DATA& request)
{
    return TextAt(request, readOperandAt);
}

WriteRequest WriteOperand(const CMD_DATA& request)
{
    return {TextAt(request, writeOperandAt), NumberAt<std::int32_t>(request, writeValueAt)};
}

std::int16_t DeleteArgument(const CMD_DATA& request)
{
    return NumberAt<std::int16_t>(request, deleteArgumentAt);
}

std::optional<StepRange> RequestedSteps(const CMD_DATA& request)
{
    const StepRange steps = AnsweredSteps(request);
    if (request.key == 0 && steps.first == 0 && steps.last == 0) {
        return std::nullopt;
    }
    return steps;
}

std::size_t CountSteps(StepRange steps)
{
    if (steps.last < steps.first) {
        return 0;
    }
    return static_cast<std::size_t>(std::int64_t{steps.last} - steps.first) + 1;
}

CMD_DATA MakeReadAnswer(std::uint16_t key, std::int32_t value)
{
    CMD_DATA answer{};
    answer.command = PLC_CMD_READ_VAR;
    answer.length = Length(answerValueAt + sizeof value);
    answer.key = key;
    PutNumber(answer, answerValueAt, value);
    return answer;
}

CMD_DATA MakeProgramStateAnswer(StepRange steps, const std::vector<StepState>& states)
{
    const std::size_t count = std::min(states.size(), maxStepsInAnswer);
    CMD_DATA answer{};
    answer.command = PLC_CMD_PRG_STATE;
    answer.length = Length(statesAt + bytesPerState * count);
    answer.key = static_cast<std::uint16_t>(count);
    answer = WithSteps(answer, steps);
    for (std::size_t i = 0; i < count; ++i) {
        PutNumber<std::uint8_t>(answer, statesAt + i, states[i].logicResult ? 1 : 0);
        PutNumber(answer, statesAt + count + i * sizeof(std::int32_t), states[i].value);
    }
    return answer;
}

StepRange AnsweredSteps(const CMD_DATA& answer)
{
    return {
        NumberAt<std::int32_t>(answer, firstStepAt), NumberAt<std::int32_t>(answer, lastStepAt)};
}

std::int32_t AnsweredValue(const CMD_DATA& answer)
{
    return NumberAt<std::int32_t>(answer, answerValueAt);
}

std::vector<StepState> AnsweredStates(const CMD_DATA& answer)
{
    const std::size_t length = std::min<std::size_t>(answer.length, PLC_CMD_SIZE);
    const std::size_t count = CountSteps(AnsweredSteps(answer));
    if (count > maxStepsInAnswer || length < statesAt + bytesPerState * count) {
        return {};
    }
    std::vector<StepState> states;
    for (std::size_t i = 0; i < count; ++i) {
        states.push_back(
            {NumberAt<std::uint8_t>(answer, statesAt + i) == 1,
             NumberAt<std::int32_t>(answer, statesAt + count + i * sizeof(std::int32_t))});
    }
    return states;
}

CMD_DATA WithSteps(CMD_DATA answer, StepRange steps)
{
    PutNumber(answer, firstStepAt, steps.first);
    PutNumber(answer, lastStepAt, steps.last);
    return answer;
}

} // namespace plchost
