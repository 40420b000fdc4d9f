#include "script.h"

#include <gmock/gmock.h>

using hostcheck::Requests;
using hostcheck::Script;
using hostcheck::Steps;

namespace {

/// What a script asks for until everything has been asked for once, as text.
std::vector<std::string> Describe(const Requests& requests)
{
    std::vector<std::string> texts;
    for (const CMD_DATA& request : requests) {
        const std::string key = std::to_string(request.key);
        if (request.command == PLC_CMD_READ_VAR) {
            char name[PLC_OPERAND_SIZE];
            PlcOperandOf(&request, name);
            texts.push_back("read " + key + " " + name);
        } else if (request.command == PLC_CMD_PRG_STATE) {
            texts.push_back("steps " + std::to_string(PlcFirstStep(&request)));
        } else if (PlcArgumentOfDelete(&request) == PLC_DELETE_ARG_RELEASE) {
            texts.push_back("release " + key);
        }
    }
    return texts;
}

Script FourOperands()
{
    return Script({"MB0", "MB1", "MB2", "MB3"}, {Steps{10, 12}, Steps{20, 22}});
}

/// The next requests that are any.
std::vector<std::string> NextOf(Script& script)
{
    Requests requests;
    while (requests.empty()) {
        requests = script.Next();
    }
    return Describe(requests);
}

} // namespace

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(HostcheckScript, AsksForTheFirstFewWhileTheWindowOpens)
{
    EXPECT_THAT(
        Describe(FourOperands().Open()), ElementsAre("read 0 MB0", "read 1 MB1", "read 2 MB2"));
}

TEST(HostcheckScript, LetsEachReadRequestBeFollowedByItsStart)
{
    const Requests requests = FourOperands().Open();

    ASSERT_EQ(requests.size(), 6U);
    EXPECT_EQ(requests[1].command, PLC_CMD_DELETE_VAR);
    EXPECT_EQ(PlcArgumentOfDelete(&requests[1]), PLC_DELETE_ARG_START);
    EXPECT_EQ(requests[1].key, requests[0].key);
}

TEST(HostcheckScript, ChangesTheListAndTheStepsAndEndsBoth)
{
    Script script = FourOperands();
    script.Open();

    EXPECT_THAT(NextOf(script), ElementsAre("read 3 MB3", "steps 10"));
    EXPECT_THAT(
        NextOf(script),
        ElementsAre(
            "release 0", "release 2", "read 4 MB0", "read 5 MB2", "read 6 MB1", "steps 20"));
    EXPECT_THAT(NextOf(script), ElementsAre("steps 0"));
    EXPECT_FALSE(script.IsThrough());
    EXPECT_THAT(
        NextOf(script),
        ElementsAre("release 1", "release 3", "release 4", "release 5", "release 6"));
    EXPECT_THAT(NextOf(script), ElementsAre("read 7 MB0", "read 8 MB1", "read 9 MB2"));
    EXPECT_TRUE(script.IsThrough());
}

TEST(HostcheckScript, ReleasesAllThatIsAskedForWhenTheWindowCloses)
{
    Script script = FourOperands();
    script.Open();
    NextOf(script);

    EXPECT_THAT(
        Describe(script.Close()),
        ElementsAre("release 0", "release 1", "release 2", "release 3", "steps 0"));
    EXPECT_THAT(script.Close(), IsEmpty());
}

TEST(HostcheckScript, AsksForNoStepsWhereThereAreNone)
{
    Script script({"MB0", "MB1"}, {});
    script.Open();

    EXPECT_THAT(NextOf(script), ElementsAre("release 0", "read 2 MB0", "read 3 MB1"));
}
