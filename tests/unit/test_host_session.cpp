#include "messageof.h"
#include "record.h"
#include "session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

namespace plchost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What the library that stands for the plug-in does and has seen. The exports have no user data,
/// so there is one for all tests.
struct FakeLibrary
{
    int created = 1;
    bool takesAnswers = true;
    std::function<void()> duringCreate = [] {};
    std::function<void()> duringDestroy = [] {};
    std::vector<std::string> calls;
    std::vector<AnswerKind> exports; ///< That have been called with an answer.
    std::vector<CMD_DATA> answers;
};

FakeLibrary* library = nullptr;

int Create(PLC_DBG_INIT* init)
{
    library->calls.push_back(std::string("create ") + init->szPath);
    library->duringCreate();
    return library->created;
}

void Destroy()
{
    library->calls.emplace_back("destroy");
    library->duringDestroy();
}

int Take(AnswerKind kind, const unsigned char* answer)
{
    library->exports.push_back(kind);
    if (!library->takesAnswers || answer == nullptr) {
        return 0;
    }
    CMD_DATA record{};
    std::memcpy(&record, answer, sizeof record);
    library->answers.push_back(record);
    return 1;
}

int TakeValue(unsigned char* answer)
{
    return Take(AnswerKind::ReadVar, answer);
}

int TakeProgramState(unsigned char* answer)
{
    return Take(AnswerKind::ProgramState, answer);
}

struct SessionTest : testing::Test
{
    SessionTest() { library = &fake; }

    ~SessionTest() override { library = nullptr; }

    std::string Open()
    {
        PLC_DBG_INIT init{};
        init.szPath[0] = 'p';
        return MessageOf(session.Open(init));
    }

    bool Answer()
    {
        const CMD_DATA answer = PlcMakeReadAnswer(1, 2);
        return answers.Answer(AnswerKind::ReadVar, &answer);
    }

    void Poll(int times)
    {
        for (int i = 0; i < times; ++i) {
            session.Poll();
        }
    }

    FakeLibrary fake;
    bool window = true;
    int changes = 0;
    Plugin plugin{{&Create, &Destroy, &TakeValue, &TakeProgramState}, ""};
    PluginAnswers answers{plugin};
    DebuggerSession session{plugin, answers, [this] { return window; }, [this] { ++changes; }};
};

TEST_F(SessionTest, OpensAndCloses)
{
    EXPECT_EQ(Open(), "");
    EXPECT_TRUE(session.IsOpen());
    session.Close();
    EXPECT_FALSE(session.IsOpen());

    EXPECT_THAT(fake.calls, ElementsAre("create p", "destroy"));
    EXPECT_EQ(changes, 2);
}

TEST_F(SessionTest, OpensOnlyOneDebuggerAtATime)
{
    Open();
    EXPECT_EQ(Open(), "");
    session.Close();
    session.Close();

    EXPECT_THAT(fake.calls, ElementsAre("create p", "destroy"));
}

TEST_F(SessionTest, OpensAgainAfterClosing)
{
    Open();
    session.Close();
    Open();

    EXPECT_TRUE(session.IsOpen());
    EXPECT_THAT(fake.calls, ElementsAre("create p", "destroy", "create p"));
}

TEST_F(SessionTest, TellsWhenTheLibraryCannotOpen)
{
    fake.created = 0;

    EXPECT_THAT(Open(), HasSubstr("does not open"));
    EXPECT_FALSE(session.IsOpen());
}

TEST_F(SessionTest, IsNoFailureWhenTheHostClosesItWhileItOpens)
{
    fake.created = 0;
    fake.duringCreate = [this] { session.Close(); };

    EXPECT_EQ(Open(), "");
    EXPECT_FALSE(session.IsOpen());
    EXPECT_TRUE(Answer());
}

TEST_F(SessionTest, NoAnswerReachesTheLibraryWhileItIsDestroyed)
{
    Open();
    bool taken = true;
    fake.duringDestroy = [&] { taken = Answer(); };

    session.Close();

    EXPECT_FALSE(taken);
    EXPECT_THAT(fake.answers, IsEmpty());
    EXPECT_TRUE(Answer());
}

TEST_F(SessionTest, ClosingAgainWhileItAsksToSaveKeepsAnswersOut)
{
    Open();
    bool taken = true;
    bool again = false;
    fake.duringDestroy = [&] {
        if (std::exchange(again, true)) {
            return;
        }
        session.Close();
        taken = Answer();
        EXPECT_EQ(Open(), "");
    };

    session.Close();

    EXPECT_FALSE(taken);
    EXPECT_THAT(fake.calls, ElementsAre("create p", "destroy", "destroy"));
    EXPECT_FALSE(session.IsBusy());
}

TEST_F(SessionTest, NoticesTheCloseBoxByARefusedAnswer)
{
    Open();
    Poll(10);
    EXPECT_TRUE(session.IsOpen());
    fake.takesAnswers = false;
    Poll(1);

    EXPECT_FALSE(session.IsOpen());
    EXPECT_THAT(fake.calls, ElementsAre("create p", "destroy"));
}

TEST_F(SessionTest, NoticesTheMenusExitByTheMissingWindow)
{
    Open();
    window = false;
    Poll(3);
    EXPECT_TRUE(session.IsOpen());
    Poll(1);

    EXPECT_FALSE(session.IsOpen());
}

TEST_F(SessionTest, AMomentWithoutAWindowIsNoExit)
{
    Open();
    for (int i = 0; i < 10; ++i) {
        window = false;
        Poll(3);
        window = true;
        Poll(1);
    }

    EXPECT_TRUE(session.IsOpen());
}

TEST_F(SessionTest, AsksWithAnAnswerThatNoRequestMatches)
{
    Open();
    Poll(1);

    ASSERT_EQ(fake.answers.size(), 1U);
    EXPECT_EQ(plc::CountSteps(AnsweredSteps(fake.answers[0])), 0U);
    EXPECT_EQ(fake.answers[0].length, 14);
}

TEST_F(SessionTest, PollsNothingWhileItOpensOrIsClosed)
{
    fake.duringCreate = [this] { Poll(1); };

    Poll(1);
    Open();

    EXPECT_THAT(fake.answers, IsEmpty());
    EXPECT_THAT(fake.calls, ElementsAre("create p"));
}

TEST_F(SessionTest, AThreadThatAnswersNeverMeetsADestroy)
{
    std::atomic<bool> done{false};
    std::thread plc([&] {
        while (!done) {
            Answer();
        }
    });

    std::size_t duringDestroy = 0;
    fake.duringDestroy = [&] {
        const std::size_t before = fake.answers.size();
        std::this_thread::yield();
        duringDestroy += fake.answers.size() - before;
        fake.answers.clear();
    };
    for (int i = 0; i < 200; ++i) {
        Open();
        session.Close();
    }
    done = true;
    plc.join();

    EXPECT_EQ(duringDestroy, 0U);
}

TEST_F(SessionTest, ANullAnswerIsPassedOn)
{
    Open();

    EXPECT_FALSE(answers.Answer(AnswerKind::ReadVar, nullptr));

    EXPECT_THAT(fake.exports, ElementsAre(AnswerKind::ReadVar));
}

TEST_F(SessionTest, EachKindOfAnswerGoesOutByItsOwnExport)
{
    Open();
    const CMD_DATA answer = PlcMakeReadAnswer(1, 2);

    for (const AnswerKind kind : {AnswerKind::ReadVar, AnswerKind::ProgramState}) {
        EXPECT_TRUE(answers.Answer(kind, &answer));
        EXPECT_EQ(fake.exports.back(), kind);
    }
}

} // namespace
} // namespace plchost
