#include "test_hostcheck_judge.h"

using hostcheck::graceTicks;
using hostcheck::lateTicks;
using hostcheck::silenceTicks;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(HostcheckJudge, FindsNothingInAHostThatDoesItRight)
{
    Open();
    Ask(0, "MB4");
    m_judge.Asked(PlcMakePrgStateRequest(5, 9));
    for (int i = 0; i < 2 * silenceTicks; ++i) {
        EXPECT_EQ(Answer(0, 17), 1);
        EXPECT_EQ(AnswerSteps(5, 9), 1);
        Wait(1);
    }
    Release(0);
    m_judge.Asked(PlcMakeStopRequest());
    Destroy();
    m_judge.End();

    EXPECT_EQ(Found(), "");
    EXPECT_THAT(
        m_judge.Figures(),
        ElementsAre("1 operands asked for, 1 answered; the slowest first value took 0.0 s"));
}

TEST_F(HostcheckJudge, FindsASecondCreateBeforeADestroy)
{
    Open();

    EXPECT_FALSE(m_judge.BeginCreate());
    EXPECT_THAT(Found(), HasSubstr("create-twice: "));
}

TEST_F(HostcheckJudge, FindsACreateInsideACallback)
{
    Open();
    m_judge.BeginCallback();

    EXPECT_FALSE(m_judge.BeginCreate());
    EXPECT_THAT(Found(), HasSubstr("create-inside: "));
}

TEST_F(HostcheckJudge, FindsACreateInsideADestroy)
{
    Open();
    m_judge.BeginDestroy();

    EXPECT_FALSE(m_judge.BeginCreate());
    EXPECT_THAT(Found(), HasSubstr("create-inside: "));
}

TEST_F(HostcheckJudge, LetsAHostDestroyWhereNothingIsOpen)
{
    EXPECT_FALSE(m_judge.BeginDestroy());
    Open();
    Destroy();
    EXPECT_FALSE(m_judge.BeginDestroy());
    EXPECT_EQ(Found(), "");
}

TEST_F(HostcheckJudge, LetsAHostDestroyInsideACallbackOfTheCreate)
{
    ASSERT_TRUE(m_judge.BeginCreate());
    Destroy();
    m_judge.EndCreate();

    EXPECT_FALSE(m_judge.IsOpen());
    EXPECT_EQ(Found(), "");
}

TEST_F(HostcheckJudge, FindsAnEndWithoutADestroy)
{
    Open();
    m_judge.End();

    EXPECT_THAT(Found(), HasSubstr("never-destroyed: "));
}

TEST_F(HostcheckJudge, FindsAnAnswerBeforeTheCreate)
{
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_THAT(Found(), HasSubstr("answer-before-create: "));
}

TEST_F(HostcheckJudge, FindsAnAnswerDuringTheDestroy)
{
    Open();
    Ask(0, "MB4");
    m_judge.BeginDestroy();

    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_THAT(Found(), HasSubstr("answer-during-destroy: "));
}

TEST_F(HostcheckJudge, FindsAnswersAfterTheDestroyThatWereNotUnderWay)
{
    Open();
    Destroy();

    Wait(graceTicks);
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_EQ(Found(), "");
    Wait(1);
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_THAT(Found(), HasSubstr("answer-after-destroy: "));
}

TEST_F(HostcheckJudge, LetsAHostAskWhetherTheDebuggerIsStillThere)
{
    EXPECT_EQ(AnswerSteps(1, 0), 0);
    Open();
    EXPECT_EQ(AnswerSteps(1, 0), 1);
    m_judge.Close();
    EXPECT_EQ(AnswerSteps(1, 0), 0);
    Destroy();
    Wait(2 * graceTicks);
    EXPECT_EQ(AnswerSteps(1, 0), 0);
    EXPECT_EQ(Found(), "");
}

TEST_F(HostcheckJudge, FindsAHostThatAsksDuringTheDestroyWhetherTheDebuggerIsStillThere)
{
    Open();
    m_judge.BeginDestroy();

    EXPECT_EQ(AnswerSteps(1, 0), 0);
    EXPECT_THAT(Found(), HasSubstr("answer-during-destroy: asks whether it is there"));
}

TEST_F(HostcheckJudge, TakesNoAnswersWhenTheOperatorHasClosedTheWindow)
{
    Open();
    Ask(0, "MB4");
    EXPECT_EQ(Answer(0, 1), 1);
    Release(0);
    m_judge.Close();

    EXPECT_EQ(Answer(0, 1), 0);
    Wait(2 * silenceTicks);
    EXPECT_EQ(Found(), "");
}

TEST_F(HostcheckJudge, FindsNullAnswers)
{
    Open();

    EXPECT_EQ(m_judge.AnswerReadVar(nullptr), 0);
    EXPECT_THAT(Found(), HasSubstr("null-answer: "));
    EXPECT_EQ(m_judge.AnswerProgState(nullptr), 0);
    EXPECT_EQ(m_report.Summary(), "1 finding: null-answer (2 times)");
}

TEST_F(HostcheckJudge, FindsAReadAnswerOfAnotherLength)
{
    Open();
    Ask(3, "MB4");
    CMD_DATA answer = PlcMakeReadAnswer(3, 1);
    answer.length = 506;
    m_judge.AnswerReadVar(&answer);

    EXPECT_THAT(Found(), HasSubstr("wrong-length: the read answer for key 3 states 506 bytes"));
}

TEST_F(HostcheckJudge, FindsAnAnswerForAKeyThatNobodyAskedFor)
{
    Open();
    Ask(0, "MB4");
    Answer(1, 1);

    EXPECT_THAT(Found(), HasSubstr("key-unknown: answers for key 1,"));
}

TEST_F(HostcheckJudge, FindsAnswersForAReleasedKeyThatWereNotUnderWay)
{
    Open();
    Ask(0, "MB4");
    Answer(0, 1);
    Release(0);

    Wait(graceTicks);
    Answer(0, 1);
    EXPECT_EQ(Found(), "");
    Wait(1);
    Answer(0, 1);
    EXPECT_THAT(Found(), HasSubstr("key-released: goes on answering for key 0 (MB4)"));
}

TEST_F(HostcheckJudge, FindsAnAnswerForAKeyOfTheLastLife)
{
    Open();
    Ask(0, "MB4");
    Ask(1, "MB5");
    Release(0);
    Release(1);
    Destroy();
    Open();
    Ask(0, "MB4");
    Answer(1, 1);

    EXPECT_THAT(Found(), HasSubstr("of-last-life: answers for key 1, which was MB5"));
}

TEST_F(HostcheckJudge, KnowsAReleasedKeyAgainWhenItIsAskedForAnew)
{
    Open();
    Ask(0, "MB4");
    Release(0);
    Ask(0, "MB5");
    Wait(lateTicks);

    EXPECT_EQ(Answer(0, 1), 1);
    EXPECT_THAT(m_judge.Rows(), ElementsAre("key 0  MB5  1"));
    EXPECT_EQ(Found(), "");
}

TEST_F(HostcheckJudge, WritesAQuestionMarkWhereNoValueHasCome)
{
    Open();
    Ask(0, "MB4");

    EXPECT_THAT(m_judge.Rows(), ElementsAre("key 0  MB4  ?"));
}
