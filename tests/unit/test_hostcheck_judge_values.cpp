#include "test_hostcheck_judge.h"

#include <limits>

using hostcheck::graceTicks;
using hostcheck::lateTicks;
using hostcheck::overlookedTicks;
using hostcheck::silenceTicks;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

struct Answered
{
    const char* operand;
    std::int32_t value;
};

class HostcheckFittingValue : public HostcheckJudge, public ::testing::WithParamInterface<Answered>
{
};

class HostcheckWideValue : public HostcheckFittingValue
{
};

} // namespace

TEST_P(HostcheckFittingValue, IsTakenForItsOperand)
{
    Open();
    Ask(0, GetParam().operand);

    EXPECT_EQ(Answer(0, GetParam().value), 1);
    EXPECT_EQ(Found(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Values,
    HostcheckFittingValue,
    ::testing::Values(
        Answered{"E0.7", 0},
        Answered{"DB10.DBX1.2", 1},
        Answered{"MB4", -128},
        Answered{"MB4", 255},
        Answered{"MW4", -32768},
        Answered{"T5", 65535},
        Answered{"MD4", smallest}));

TEST_P(HostcheckWideValue, IsFound)
{
    Open();
    Ask(0, GetParam().operand);
    Answer(0, GetParam().value);

    EXPECT_THAT(Found(), HasSubstr("value-too-wide: "));
}

INSTANTIATE_TEST_SUITE_P(
    Values,
    HostcheckWideValue,
    ::testing::Values(
        Answered{"MB4", 256},
        Answered{"MB4", -129},
        Answered{"DB10.DBW2", 65536},
        Answered{"Z1", -32769}));

TEST_F(HostcheckJudge, FindsABitThatIsAByteBehindAMask)
{
    Open();
    Ask(0, "E0.3");
    Answer(0, 8);

    EXPECT_THAT(Found(), HasSubstr("bit-not-0-or-1: E0.3 (key 0) is answered by 8"));
}

TEST_F(HostcheckJudge, FindsALogicResultThatIsNeither0Nor1)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    AnswerSteps(5, 9, 0xFF);

    EXPECT_THAT(Found(), HasSubstr("state-not-0-or-1: the logic result of step 5"));
}

TEST_F(HostcheckJudge, FindsStepsThatWereNotAskedForAsOneRange)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    AnswerSteps(5, 8);

    EXPECT_THAT(Found(), HasSubstr("steps-unknown: answers for the steps 5 to 8"));
}

TEST_F(HostcheckJudge, FindsStepsWhoseRangeIsReplacedOrEnded)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    m_judge.Asked(PlcMakePrgStateRequest(10, 12));
    AnswerSteps(5, 9);
    EXPECT_EQ(Found(), "") << "it may have been under way";
    Wait(graceTicks + 1);
    AnswerSteps(5, 9);
    EXPECT_THAT(Found(), HasSubstr("steps-released: goes on answering for the steps 5 to 9"));

    m_judge.Asked(PlcMakeStopRequest());
    Wait(graceTicks + 1);
    AnswerSteps(10, 12);
    EXPECT_EQ(m_report.Summary(), "1 finding: steps-released (2 times)");
}

TEST_F(HostcheckJudge, FindsStepsOfTheLastLife)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    Destroy();
    Open();
    AnswerSteps(5, 9);

    EXPECT_THAT(Found(), HasSubstr("of-last-life: answers for the steps 5 to 9"));
}

TEST_F(HostcheckJudge, FindsAProgramStateAnswerOfAnotherLength)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    CMD_DATA answer = PlcMakePrgStateAnswer(
        5, 9, std::vector<std::uint8_t>(5).data(), std::vector<std::int32_t>(5).data());
    answer.length = PLC_CMD_SIZE;
    m_judge.AnswerProgState(&answer);
    EXPECT_THAT(Found(), HasSubstr("wrong-length: the program-state answer for the steps 5 to 9"));

    answer.length = PLC_READ_ANSWER_SIZE;
    m_judge.AnswerProgState(&answer);
    EXPECT_EQ(m_report.Summary(), "1 finding: wrong-length (2 times)");
}

TEST_F(HostcheckJudge, FindsAFirstValueThatIsLate)
{
    Open();
    Ask(0, "MB4");
    Ask(1, "MB5");
    Wait(lateTicks);
    Answer(0, 1);
    EXPECT_EQ(Found(), "");
    Wait(1);
    Answer(1, 1);

    EXPECT_THAT(Found(), HasSubstr("value-late: MB5 (key 1) gets its first value after 2.1 s"));
}

TEST_F(HostcheckJudge, FindsAValueThatIsToldOnceAndNoMore)
{
    Open();
    Ask(0, "MB4");
    Answer(0, 1);
    Wait(silenceTicks);
    EXPECT_EQ(Found(), "");
    Wait(1);

    EXPECT_THAT(Found(), HasSubstr("value-stops: MB4 (key 0)"));
}

TEST_F(HostcheckJudge, FindsAnOperandThatIsAnsweredUnderItsFirstKeyOnly)
{
    Open();
    Ask(0, "MB4");
    Answer(0, 1);
    Ask(1, "MB4");
    Wait(overlookedTicks + 1);

    EXPECT_THAT(Found(), HasSubstr("list-change-ignored: MB4 (key 1)"));
}

TEST_F(HostcheckJudge, FindsStepsThatAreNotAnsweredAlthoughOthersWere)
{
    Open();
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    AnswerSteps(5, 9);
    m_judge.Asked(PlcMakePrgStateRequest(10, 12));
    Wait(overlookedTicks + 1);

    EXPECT_THAT(Found(), HasSubstr("list-change-ignored: the steps 10 to 12"));
}

TEST_F(HostcheckJudge, FindsAValueThatWasOnlyToldWhileTheDebuggerOpened)
{
    ASSERT_TRUE(m_judge.BeginCreate());
    Ask(0, "MB4");
    EXPECT_EQ(Answer(0, 1), 0) << "dropped";
    m_judge.EndCreate();
    Wait(overlookedTicks + 1);

    EXPECT_THAT(Found(), HasSubstr("not-answered-again: MB4 (key 0)"));
}

TEST_F(HostcheckJudge, FindsAHostThatAnswersNothing)
{
    Open();
    Ask(0, "MB4");
    Ask(1, "MB5");
    Wait(overlookedTicks + 1);
    EXPECT_EQ(Found(), "") << "there may be no such operands";
    Release(0);
    Wait(1);

    EXPECT_THAT(Found(), HasSubstr("nothing-answered: "));
}

TEST_F(HostcheckJudge, TellsOfUnansweredStepsOnlyWhereStepsWereAskedFor)
{
    const std::string line = "program states: none answered";
    Open();
    EXPECT_THAT(m_judge.Figures(), Not(Contains(line)));

    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    EXPECT_THAT(m_judge.Figures(), Contains(line));
}

TEST_F(HostcheckJudge, LetsAHostAnswerNothingForAnOperandThatItDoesNotHave)
{
    Open();
    Ask(0, "MB4");
    Ask(1, "EB5");
    Answer(0, 1);
    Wait(overlookedTicks + 1);
    Release(1);
    Wait(1);

    EXPECT_EQ(Found(), "");
    EXPECT_THAT(m_judge.Figures(), Contains("not answered: EB5"));
}
