#include "pending_writes.h"
#include "remoteoperands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const PendingWrites::Time start{1h};

class PendingWritesTest : public testing::Test
{
protected:
    void Add(const std::string& id, PendingWrites::Time now = start)
    {
        m_writes.Add(
            {"a", id, Operand("MW20"), 17, 0ms},
            [this, id](const base::Result<void>& done) {
                m_ends.push_back(id + ": " + (done ? "done" : done.Message()));
            },
            now);
    }

    PendingWrites m_writes;
    std::vector<std::string> m_ends;
};

TEST_F(PendingWritesTest, EndAsTheMachineAnswers)
{
    Add("1");
    Add("2");

    m_writes.Answer({"2", 1, std::nullopt, "MW20 is not written: service may not"});
    m_writes.Answer({"1", 1, 17, ""});

    EXPECT_THAT(m_ends, ElementsAre("2: MW20 is not written: service may not", "1: done"));
}

TEST_F(PendingWritesTest, EndOnceWhateverComesLater)
{
    Add("1");

    m_writes.Answer({"1", 1, 17, ""});
    m_writes.Answer({"1", 1, std::nullopt, "no"});
    m_writes.Withdraw("1", "no");
    m_writes.Expire(start + 1h);
    m_writes.EndAll("no");

    EXPECT_THAT(m_ends, ElementsAre("1: done"));
}

TEST_F(PendingWritesTest, AreNotConfirmedWhenNoAnswerComesInTime)
{
    Add("1");
    Add("2", start + 1s);

    m_writes.Expire(start + 1999ms);
    EXPECT_THAT(m_ends, IsEmpty());
    m_writes.Expire(start + 2s);

    EXPECT_THAT(
        m_ends, ElementsAre("1: MW20 is not confirmed: the machine has not answered within 2 s"));
}

TEST_F(PendingWritesTest, AreNotWrittenWhenTheyHaveNeverLeft)
{
    Add("1");

    m_writes.Withdraw("1", "there is no broker");

    EXPECT_THAT(m_ends, ElementsAre("1: MW20 is not written: there is no broker"));
}

TEST_F(PendingWritesTest, AreNotConfirmedWhenTheLinkEnds)
{
    Add("1");
    Add("2");

    m_writes.EndAll("the link has ended");

    EXPECT_THAT(
        m_ends,
        ElementsAre(
            "1: MW20 is not confirmed: the link has ended",
            "2: MW20 is not confirmed: the link has ended"));
}

} // namespace
} // namespace plcremote
