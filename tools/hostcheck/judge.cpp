#include "judge.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace hostcheck {

namespace {

template <typename Signed, typename Unsigned> bool IsWithin(std::int32_t value)
{
    return value >= std::numeric_limits<Signed>::min() &&
           value <= std::numeric_limits<Unsigned>::max();
}

/// Both readings of a byte or word are taken, with its sign and without.
bool Fits(std::int32_t value, plc::Width width)
{
    switch (width) {
    case plc::Width::Bit:
        return value == 0 || value == 1;
    case plc::Width::Byte:
        return IsWithin<std::int8_t, std::uint8_t>(value);
    case plc::Width::Word:
        return IsWithin<std::int16_t, std::uint16_t>(value);
    case plc::Width::DoubleWord:
        return true;
    }
    return true;
}

std::string NameOfKey(std::uint16_t key)
{
    return "key " + std::to_string(key);
}

std::string Bytes(int count)
{
    return std::to_string(count) + " bytes";
}

/// "0.3 s"; a tick is a tenth of a second.
std::string Seconds(int ticks)
{
    return std::to_string(ticks / 10) + "." + std::to_string(ticks % 10) + " s";
}

} // namespace

bool Judge::BeginCreate()
{
    if (m_callbacks > 0 || m_life == Life::Destroying) {
        m_report.Find(
            Finding::CreateInside,
            m_callbacks > 0 ? "creates the debugger inside a callback"
                            : "creates the debugger while it is being destroyed");
        return false;
    }
    if (m_life == Life::Creating || m_life == Life::Open) {
        m_report.Find(
            Finding::CreateTwice, "creates the debugger again without destroying it before");
        return false;
    }
    m_former = std::exchange(m_variables, {});
    m_formerSteps = std::exchange(m_steps, {});
    m_life = Life::Creating;
    m_isClosed = false;
    ++m_lives;
    return true;
}

void Judge::EndCreate()
{
    if (m_life == Life::Creating) {
        m_life = Life::Open;
    }
}

bool Judge::BeginDestroy()
{
    if (m_life != Life::Creating && m_life != Life::Open) {
        return false;
    }
    m_life = Life::Destroying;
    return true;
}

void Judge::EndDestroy()
{
    m_life = Life::Destroyed;
    m_destroyedAt = m_now;
}

void Judge::ReleaseSteps()
{
    if (!m_steps.empty() && !m_steps.back().releasedAt) {
        m_steps.back().releasedAt = m_now;
    }
}

void Judge::Asked(const CMD_DATA& request)
{
    if (request.command == PLC_CMD_READ_VAR) {
        char name[PLC_OPERAND_SIZE];
        PlcOperandOf(&request, name);
        Variable variable;
        variable.operand = name;
        variable.width = plc::ParseOperand(name).value_or(plc::Operand{}).width;
        variable.askedAt = m_now;
        m_answered.try_emplace(variable.operand, false);
        m_variables[request.key] = variable;
    } else if (request.command == PLC_CMD_DELETE_VAR) {
        if (PlcArgumentOfDelete(&request) == PLC_DELETE_ARG_RELEASE) {
            m_variables[request.key].releasedAt = m_now;
        }
    } else if (request.command == PLC_CMD_PRG_STATE) {
        ReleaseSteps();
        if (PlcIsStop(&request) == 0) {
            AskedSteps asked;
            asked.steps = {PlcFirstStep(&request), PlcLastStep(&request)};
            asked.askedAt = m_now;
            m_steps.push_back(asked);
            m_stepsAsked = true;
        }
    }
}

/// Whether an answer comes while a debugger takes it.
bool Judge::IsTakenNow(const std::string& what)
{
    switch (m_life) {
    case Life::Never:
        m_report.Find(Finding::AnswerBeforeCreate, what + " before the debugger is created");
        return false;
    case Life::Destroying:
        m_report.Find(
            Finding::AnswerDuringDestroy,
            what + " while ExportDestroyPlcDebugger() runs; the library would be torn down "
                   "under the answer");
        return false;
    case Life::Destroyed:
        if (m_now - m_destroyedAt > graceTicks) {
            m_report.Find(
                Finding::AnswerAfterDestroy, what + " long after the debugger was destroyed");
        }
        return false;
    case Life::Creating:
        return false;
    case Life::Open:
        return !m_isClosed;
    }
    return false;
}

int Judge::AnswerReadVar(const CMD_DATA* answer)
{
    if (answer == nullptr) {
        m_report.Find(Finding::NullAnswer, "hands over a null pointer as read answer");
        return 0;
    }
    if (m_life == Life::Creating && m_variables.count(answer->key) > 0) {
        m_variables[answer->key].answeredEarly = true;
    }
    const bool taken = IsTakenNow("answers for " + NameOfKey(answer->key));
    if (m_life == Life::Open) {
        JudgeRead(*answer);
    }
    return taken ? 1 : 0;
}

void Judge::JudgeRead(const CMD_DATA& answer)
{
    const std::string key = NameOfKey(answer.key);
    if (answer.length != PLC_READ_ANSWER_SIZE) {
        m_report.Find(
            Finding::WrongLength,
            "the read answer for " + key + " states " + Bytes(answer.length) + " instead of " +
                Bytes(PLC_READ_ANSWER_SIZE));
    }
    const auto found = m_variables.find(answer.key);
    if (found == m_variables.end()) {
        const auto former = m_former.find(answer.key);
        if (former == m_former.end()) {
            m_report.Find(
                Finding::KeyUnknown, "answers for " + key + ", which nobody has asked for");
        } else {
            m_report.Find(
                Finding::OfLastLife,
                "answers for " + key + ", which was " + former->second.operand +
                    " before the debugger was created anew");
        }
        return;
    }
    Variable& variable = found->second;
    if (variable.releasedAt) {
        if (m_now - *variable.releasedAt > graceTicks) {
            m_report.Find(
                Finding::KeyReleased,
                "goes on answering for " + key + " (" + variable.operand +
                    "), which has been released");
        }
        return;
    }
    if (answer.length >= PLC_READ_ANSWER_SIZE) {
        JudgeValue(answer.key, variable, PlcAnsweredValue(&answer));
    }
}

void Judge::JudgeValue(std::uint16_t key, Variable& variable, std::int32_t value)
{
    const std::string name = variable.operand + " (" + NameOfKey(key) + ")";
    if (!Fits(value, variable.width)) {
        const bool isBit = variable.width == plc::Width::Bit;
        m_report.Find(
            isBit ? Finding::BitNot0Or1 : Finding::ValueTooWide,
            name + " is answered by " + std::to_string(value) +
                (isBit ? "; a bit is 0 or 1" : ", which is wider than the operand"));
    }
    if (!variable.answeredAt) {
        JudgeFirst(name, variable.askedAt);
    }
    variable.answeredAt = m_now;
    variable.value = value;
    m_answered[variable.operand] = true;
}

void Judge::JudgeFirst(const std::string& what, int askedAt)
{
    const int took = m_now - askedAt;
    m_slowest = std::max(m_slowest, took);
    if (took > lateTicks) {
        m_report.Find(
            Finding::ValueLate,
            what + " gets its first value after " + Seconds(took) + "; until then it shows \"?\"");
    }
}

int Judge::AnswerProgState(const CMD_DATA* answer)
{
    if (answer == nullptr) {
        m_report.Find(Finding::NullAnswer, "hands over a null pointer as program-state answer");
        return 0;
    }
    const Steps steps{PlcFirstStep(answer), PlcLastStep(answer)};
    const bool hasRange = answer->length >= PLC_STATES_AT;
    // Without a step it only asks whether the debugger is still there.
    const bool isQuestion = hasRange && PlcStepCount(steps.first, steps.last) == 0;
    if (isQuestion && m_life != Life::Destroying) {
        return IsAsking() ? 1 : 0;
    }
    const bool taken = IsTakenNow(isQuestion ? "asks whether it is there" : "answers for steps");
    if (m_life == Life::Open) {
        if (hasRange) {
            JudgeSteps(*answer, steps);
        } else {
            m_report.Find(
                Finding::WrongLength,
                "a program-state answer of " + Bytes(answer->length) + " names no steps");
        }
    }
    return taken ? 1 : 0;
}

void Judge::JudgeSteps(const CMD_DATA& answer, const Steps& steps)
{
    const auto isOf = [&](const AskedSteps& asked) { return asked.steps == steps; };
    const auto asked = std::find_if(m_steps.rbegin(), m_steps.rend(), isOf);
    if (asked == m_steps.rend()) {
        const bool isFormer = std::any_of(m_formerSteps.begin(), m_formerSteps.end(), isOf);
        m_report.Find(
            isFormer ? Finding::OfLastLife : Finding::StepsUnknown,
            "answers for " + Describe(steps) +
                (isFormer ? ", which were asked for before the debugger was created anew"
                          : ", which nobody has asked for as such a range"));
        return;
    }
    if (asked->releasedAt) {
        if (m_now - *asked->releasedAt > graceTicks) {
            m_report.Find(
                Finding::StepsReleased,
                "goes on answering for " + Describe(steps) + ", which nobody asks for any more");
        }
        return;
    }
    JudgeStates(answer, steps);
    if (!asked->answered) {
        asked->answered = true;
        m_stepsAnswered = true;
        JudgeFirst(Describe(steps), asked->askedAt);
    }
}

void Judge::JudgeStates(const CMD_DATA& answer, const Steps& steps)
{
    const auto count = static_cast<int>(PlcStepCount(steps.first, steps.last));
    const int length = PLC_STATES_AT + PLC_STEP_SIZE * count;
    if (answer.length != length) {
        m_report.Find(
            Finding::WrongLength,
            "the program-state answer for " + Describe(steps) + " states " + Bytes(answer.length) +
                " instead of " + Bytes(length));
    }
    const std::uint8_t* const states = answer.payload + (PLC_STATES_AT - PLC_CMD_HEADER_SIZE);
    const int known = std::min(count, std::max(0, answer.length - PLC_STATES_AT));
    for (int i = 0; i < known; ++i) {
        if (states[i] > 1) {
            m_report.Find(
                Finding::StateNot0Or1,
                "the logic result of step " + std::to_string(steps.first + i) + " is answered by " +
                    std::to_string(states[i]) + "; only 1 counts as set");
            return;
        }
    }
}

void Judge::JudgeSilence(std::uint16_t key, Variable& variable)
{
    const std::string name = variable.operand + " (" + NameOfKey(key) + ")";
    if (variable.answeredAt) {
        if (m_now - *variable.answeredAt > silenceTicks) {
            variable.silenceTold = true;
            m_report.Find(
                Finding::ValueStops,
                name + " was answered and then no more for " + Seconds(silenceTicks));
        }
        return;
    }
    if (m_now - variable.askedAt <= overlookedTicks) {
        return;
    }
    variable.silenceTold = true;
    if (variable.answeredEarly) {
        m_report.Find(
            Finding::NotAnsweredAgain,
            name + " was answered only while ExportCreatePlcDebugger() ran, which is dropped");
    } else if (m_answered[variable.operand]) {
        m_report.Find(
            Finding::ListChangeIgnored,
            name + " is not answered, although it was under another key");
    }
}

void Judge::JudgeSilence(AskedSteps& asked)
{
    if (!asked.answered && m_stepsAnswered && m_now - asked.askedAt > overlookedTicks) {
        asked.silenceTold = true;
        m_report.Find(
            Finding::ListChangeIgnored,
            Describe(asked.steps) + " are not answered, although others were");
    }
}

void Judge::Tick()
{
    ++m_now;
    if (!IsAsking()) {
        return;
    }
    bool anyAnswer = false;
    bool anyLate = false;
    for (auto& [key, variable] : m_variables) {
        if (!variable.releasedAt && !variable.silenceTold) {
            JudgeSilence(key, variable);
        }
        anyAnswer = anyAnswer || variable.answeredAt || variable.answeredEarly;
        anyLate = anyLate || (variable.releasedAt && !variable.answeredAt);
    }
    // By the first release all operands have been asked for long enough.
    if (anyLate && !anyAnswer) {
        m_report.Find(Finding::NothingAnswered, "answers for none of the operands");
    }
    if (!m_steps.empty() && !m_steps.back().releasedAt && !m_steps.back().silenceTold) {
        JudgeSilence(m_steps.back());
    }
}

void Judge::End()
{
    if (m_life == Life::Creating || m_life == Life::Open) {
        m_report.Find(Finding::NeverDestroyed, "ends without a call of ExportDestroyPlcDebugger()");
    }
}

std::vector<std::string> Judge::Rows() const
{
    std::vector<std::string> rows;
    for (const auto& [key, variable] : m_variables) {
        if (!variable.releasedAt) {
            rows.push_back(
                NameOfKey(key) + "  " + variable.operand + "  " +
                (variable.answeredAt ? std::to_string(variable.value) : "?"));
        }
    }
    return rows;
}

std::vector<std::string> Judge::Figures() const
{
    std::string silent;
    std::size_t answered = 0;
    for (const auto& [operand, wasAnswered] : m_answered) {
        answered += wasAnswered ? 1 : 0;
        silent += wasAnswered ? "" : (silent.empty() ? "" : ", ") + operand;
    }
    std::vector<std::string> lines{
        std::to_string(m_answered.size()) + " operands asked for, " + std::to_string(answered) +
        " answered; the slowest first value took " + Seconds(m_slowest)};
    if (!silent.empty()) {
        lines.push_back("not answered: " + silent);
    }
    if (m_stepsAsked && !m_stepsAnswered) {
        lines.emplace_back("program states: none answered");
    }
    return lines;
}

} // namespace hostcheck
