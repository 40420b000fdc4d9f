#include "plcprgpanel_state.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint16_t requestLength = 14;
constexpr std::int64_t firstOffset = 6;
constexpr std::int64_t lastOffset = 10;
constexpr std::int64_t statesOffset = 14;

template <typename T> T At(const CMD_DATA& record, std::int64_t offset)
{
    T value{};
    if (offset + static_cast<std::int64_t>(sizeof value) <= PLC_CMD_SIZE) {
        std::memcpy(&value, reinterpret_cast<const char*>(&record) + offset, sizeof value);
    }
    return value;
}

void Put(CMD_DATA& record, std::int64_t offset, std::int32_t value)
{
    std::memcpy(reinterpret_cast<char*>(&record) + offset, &value, sizeof value);
}

} // namespace

CMD_DATA PrgStateRequest(std::int32_t first, std::int32_t last)
{
    CMD_DATA request{};
    request.command = PLC_CMD_PRG_STATE;
    request.length = requestLength;
    if (first != noStep || last != noStep) {
        request.key = static_cast<std::uint16_t>(last - first + 1);
        Put(request, firstOffset, first);
        Put(request, lastOffset, last);
    }
    return request;
}

PrgStateAnswer::PrgStateAnswer(const CMD_DATA& record)
    : m_record(record), m_first(At<std::int32_t>(record, firstOffset)),
      m_last(At<std::int32_t>(record, lastOffset))
{
}

bool PrgStateAnswer::State(std::int64_t i) const
{
    return At<std::uint8_t>(m_record, statesOffset + i) == 1;
}

std::optional<std::int32_t> PrgStateAnswer::Value(std::int64_t i) const
{
    const std::int64_t count = std::int64_t{m_last} - m_first + 1;
    const std::int64_t offset = statesOffset + count + i * std::int64_t{sizeof(std::int32_t)};
    const auto value = At<std::int32_t>(m_record, offset);
    return value == PLC_NO_VALUE || value == -1 ? std::nullopt : std::optional(value);
}

void StepIndex::Build(const std::vector<DB_BAUSTEIN>& lines)
{
    m_lineOfStep.clear();
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (lines[line].step != noStep) {
            if (m_lineOfStep.empty()) {
                m_firstStep = lines[line].step;
            }
            m_lineOfStep.push_back(line);
        }
    }
}

std::int64_t StepIndex::Last() const
{
    return m_firstStep + static_cast<std::int64_t>(m_lineOfStep.size()) - 1;
}

std::optional<std::size_t> StepIndex::LineOf(std::int64_t step) const
{
    const std::int64_t position = step - m_firstStep;
    if (position < 0 || position >= static_cast<std::int64_t>(m_lineOfStep.size())) {
        return std::nullopt;
    }
    return m_lineOfStep[static_cast<std::size_t>(position)];
}

void ApplyAnswer(
    const PrgStateAnswer& answer, const StepIndex& index, std::vector<DB_BAUSTEIN>& lines)
{
    // Only the block's own steps: an answer may claim to carry all 32 bits of them.
    const std::int64_t first = std::max<std::int64_t>(answer.First(), index.First());
    const std::int64_t last = std::min<std::int64_t>(answer.Last(), index.Last());
    for (std::int64_t step = first; step <= last; ++step) {
        DB_BAUSTEIN& line = lines[*index.LineOf(step)];
        const std::int64_t i = step - answer.First();
        const auto value = answer.Value(i);
        line.state = answer.State(i) ? L"1" : L"0";
        line.value = value ? std::to_wstring(*value) : L"-";
    }
}
