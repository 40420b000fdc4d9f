#include "records.h"

#include <algorithm>
#include <cstring>

CMD_DATA
PrgStateAnswerRecord(std::int32_t first, std::int32_t last, const std::vector<AnsweredStep>& steps)
{
    std::vector<std::uint8_t> states;
    std::vector<std::int32_t> values;
    for (const AnsweredStep& step : steps) {
        states.push_back(step.state);
        values.push_back(step.value);
    }
    const std::int32_t end = static_cast<std::int32_t>(steps.size()) - 1;
    CMD_DATA answer = PlcMakePrgStateAnswer(0, end, states.data(), values.data());
    PlcPutSteps(&answer, first, last);
    return answer;
}

std::vector<std::uint8_t> BytesOf(const CMD_DATA& record)
{
    std::vector<std::uint8_t> bytes(std::min<std::size_t>(record.length, sizeof record));
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

CMD_DATA RecordOfBytes(const std::vector<std::uint8_t>& bytes)
{
    CMD_DATA record{};
    std::memcpy(&record, bytes.data(), bytes.size());
    return record;
}
