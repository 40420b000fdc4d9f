#include "fuzz.h"
#include "plcdebugframe_drain.h"
#include "plcdebugvar.h"
#include "plcprgpanel_state.h"

#include <algorithm>
#include <cstring>
#include <vector>

// Answers of both kinds: read no further than the length word allows, and shown without harm.

namespace {

/// A block of executable lines, of steps around those that answers name.
std::vector<DB_BAUSTEIN> Lines()
{
    constexpr std::int32_t count = 200;
    std::vector<DB_BAUSTEIN> lines;
    for (std::int32_t step = 1; step <= count; ++step) {
        lines.push_back({L"?", L"-", L"U E 0.0", step});
    }
    return lines;
}

/// @return the answer in a buffer that ends where its length word says, 506 bytes at the most.
std::vector<unsigned char> ExactAnswer(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t header = PLC_CMD_HEADER_SIZE;
    std::vector<unsigned char> answer(data, data + size);
    answer.resize(std::max(answer.size(), header));
    std::uint16_t length = 0;
    std::memcpy(&length, &answer[offsetof(CMD_DATA, length)], sizeof length);
    answer.resize(std::clamp<std::size_t>(length, header, sizeof(CMD_DATA)));
    answer.shrink_to_fit();
    return answer;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<unsigned char> answer = ExactAnswer(data, size);
    const CMD_DATA record = CopyAnswer(answer.data());
    Require(
        std::memcmp(&record, answer.data(), std::min<std::size_t>(record.length, answer.size())) ==
            0,
        "an answer is copied as it stands");
    for (const AnswerKey keyOf : {VariableOf, StepsOf}) {
        AnswerArray answers;
        answers.Add(record);
        answers.Add(record);
        NewestAnswers(keyOf).TakeOlder(answers);
        Require(answers.GetCount() == 1, "of one key the newest answer survives");
    }

    std::vector<DB_BAUSTEIN> lines = Lines();
    StepIndex index;
    index.Build(lines);
    ApplyAnswer(record, index, lines);
    for (const DB_BAUSTEIN& line : lines) {
        Require(line.state == L"?" || line.state == L"0" || line.state == L"1", "a state is one");
        Require(!line.value.empty(), "a value has a text");
    }

    PlcDebugVar var;
    for (std::int32_t bytes = eSizeBit; bytes <= eSizeDouble; ++bytes) {
        for (std::int32_t format = eFormatDecimal; format <= eFormatFloat; ++format) {
            var.size = bytes;
            var.format = format;
            var.SetVarValue(static_cast<long>(PlcAnsweredValue(&record)));
            Require(!var.GetVarValueShow().empty(), "a value has a text");
        }
    }
    return 0;
}
