#pragma once

#include "judge.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

/// A judge of a host that the tests are, and what it has found.
class HostcheckJudge : public ::testing::Test
{
protected:
    void Open()
    {
        ASSERT_TRUE(m_judge.BeginCreate());
        m_judge.EndCreate();
    }

    void Destroy()
    {
        ASSERT_TRUE(m_judge.BeginDestroy());
        m_judge.EndDestroy();
    }

    void Ask(std::uint16_t key, const char* operand)
    {
        m_judge.Asked(PlcMakeReadRequest(key, operand));
        m_judge.Asked(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
    }

    void Release(std::uint16_t key)
    {
        m_judge.Asked(PlcMakeDeleteRequest(key, PLC_DELETE_ARG_RELEASE));
    }

    int Answer(std::uint16_t key, std::int32_t value)
    {
        const CMD_DATA answer = PlcMakeReadAnswer(key, value);
        return m_judge.AnswerReadVar(&answer);
    }

    int AnswerSteps(std::int32_t first, std::int32_t last, std::uint8_t state = 1)
    {
        const std::vector<std::uint8_t> states(PLC_MAX_STEPS, state);
        const std::vector<std::int32_t> values(PLC_MAX_STEPS, PLC_NO_VALUE);
        const CMD_DATA answer = PlcMakePrgStateAnswer(first, last, states.data(), values.data());
        return m_judge.AnswerProgState(&answer);
    }

    void Wait(int ticks)
    {
        for (int i = 0; i < ticks; ++i) {
            m_judge.Tick();
        }
    }

    /// The line of the only finding; that of none is empty.
    std::string Found() const
    {
        EXPECT_LE(m_report.Lines().size(), 1U);
        return m_report.IsClean() ? "" : m_report.Lines().front();
    }

    hostcheck::Report m_report{[](const std::string&) {}};
    hostcheck::Judge m_judge{m_report};
};
