#include "remoteoperands.h"
#include "write_judge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

struct WriteJudgeTest : testing::Test
{
    /// A write of MW20 that was sent when the machine had run for a minute.
    static WriteMessage Write(const std::string& id)
    {
        return {"0123456789abcdef", id, Operand("MW20"), 17, 60s};
    }

    WriteJudge judge{ParseWriteList("service MW20", "list").operator*(), "0123456789abcdef"};
};

TEST_F(WriteJudgeTest, LetsThroughWhatTheListAllows)
{
    EXPECT_TRUE(judge.Judge("service", Write("a"), 60s));
    EXPECT_THAT(
        judge.Judge("other", Write("b"), 60s).Message(), HasSubstr("does not let other write it"));
}

TEST_F(WriteJudgeTest, LetsTheSameThroughOnce)
{
    EXPECT_TRUE(judge.Judge("service", Write("a"), 60s));

    EXPECT_THAT(judge.Judge("service", Write("a"), 60s).Message(), HasSubstr("come before"));
}

TEST_F(WriteJudgeTest, DoesNothingThatWasMeantForAnotherRun)
{
    WriteMessage message = Write("a");
    message.session = "fedcba9876543210";

    EXPECT_THAT(judge.Judge("service", message, 60s).Message(), HasSubstr("former run"));
}

TEST_F(WriteJudgeTest, DoesNothingLate)
{
    EXPECT_TRUE(judge.Judge("service", Write("a"), 62s));
    EXPECT_THAT(judge.Judge("service", Write("b"), 62s + 1ms).Message(), HasSubstr("too late"));
}

} // namespace
} // namespace plcremote
