#include "plcprgpanel_state.h"

#include <algorithm>

CMD_DATA PrgStateRequest(std::int32_t first, std::int32_t last)
{
    return first == noStep && last == noStep ? PlcMakeStopRequest()
                                             : PlcMakePrgStateRequest(first, last);
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

void ApplyAnswer(const CMD_DATA& answer, const StepIndex& index, std::vector<DB_BAUSTEIN>& lines)
{
    // Only the block's own steps: an answer may claim to carry all 32 bits of them.
    const std::int64_t answered = PlcFirstStep(&answer);
    const std::int64_t first = std::max(answered, index.First());
    const std::int64_t last = std::min<std::int64_t>(PlcLastStep(&answer), index.Last());
    for (std::int64_t step = first; step <= last; ++step) {
        DB_BAUSTEIN& line = lines[*index.LineOf(step)];
        const std::int32_t value = PlcStepValue(&answer, step - answered);
        const bool hasValue = value != PLC_NO_VALUE && value != -1;
        line.state = PlcStepState(&answer, step - answered) ? L"1" : L"0";
        line.value = hasValue ? std::to_wstring(value) : noValue;
    }
}
