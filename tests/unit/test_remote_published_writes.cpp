#include "published_writes.h"
#include "scriptedsource.h"
#include "silentwatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace plcremote {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr const char* session = "0123456789abcdef";
constexpr milliseconds running{10'000};

const plc::Operand operand = plc::ParseOperand("MW20").value();

struct PublishedWritesTest : testing::Test
{
    PublishedWritesTest()
    {
        auto made = std::make_unique<ScriptedSource>();
        source = made.get();
        source->endsWrites = false;
        link.emplace(std::move(made));
        link->Start();
        link->Watch(watcher, operand);
        writes.emplace(
            *link,
            WriteJudge(*ParseWriteList("service MW20", "list"), session),
            [this](const std::string& line) { lines.push_back(line); },
            [this](const Viewer& viewer, const AnswerMessage& message) {
                const auto& written = std::get<WrittenMessage>(message);
                answers.push_back(viewer.window + ": " + written.refusal);
            });
    }

    void Read(std::uint32_t value)
    {
        source->events->OnReadings(*source->list, {{0, {value, now}}});
    }

    /// A viewer's write of 17, sent just now.
    bool Take(const std::string& user = "service")
    {
        const std::string id = "fedcba987654321" + std::to_string(nextId++);
        return writes->Take({user, "w1"}, {session, id, operand, 17, running}, running, now);
    }

    plclink::Clock::time_point now = plclink::Clock::now();
    SilentWatcher watcher;
    ScriptedSource* source = nullptr;
    std::optional<plclink::MachineLink> link;
    std::optional<PublishedWrites> writes;
    std::vector<std::string> lines;
    std::vector<std::string> answers;
    int nextId = 0;
};

TEST_F(PublishedWritesTest, BeginWhenItIsKnownWhatWasThere)
{
    EXPECT_TRUE(Take());
    writes->Turn(running, now);
    EXPECT_THAT(source->written, IsEmpty());
    EXPECT_EQ(writes->Operands().size(), 1U);

    Read(3);
    writes->Turn(running, now);
    EXPECT_THAT(source->written, ElementsAre("MW20=17"));
    EXPECT_THAT(answers, IsEmpty());

    source->underWay.front()({});
    writes->Turn(running, now);
    EXPECT_THAT(lines, ElementsAre(EndsWith("write from service: MW20 3 -> 17 done")));
    EXPECT_THAT(answers, ElementsAre("w1: "));
    EXPECT_THAT(source->written, ElementsAre("MW20=17"));
    EXPECT_THAT(writes->Operands(), IsEmpty());
}

TEST_F(PublishedWritesTest, AreAnsweredInTheTurnInWhichTheMachineDoesThem)
{
    source->endsWrites = true;
    Read(3);
    Take();

    writes->Turn(running, now);

    EXPECT_THAT(answers, ElementsAre("w1: "));
    EXPECT_THAT(writes->Operands(), IsEmpty());
}

TEST_F(PublishedWritesTest, AreRefusedWithTheValueThatStays)
{
    Read(3);

    EXPECT_FALSE(Take("guest"));

    EXPECT_THAT(
        lines,
        ElementsAre(EndsWith("write from guest: MW20 3 -> 17 refused, it is 3: "
                             "the machine does not let guest write it from far away")));
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_THAT(source->written, IsEmpty());
}

TEST_F(PublishedWritesTest, AreNotDoneOfWhatCannotBeRead)
{
    Take();
    writes->Turn(running + 499ms, now + 499ms);
    EXPECT_THAT(lines, IsEmpty());

    writes->Turn(running + 500ms, now + 500ms);

    EXPECT_THAT(
        lines, ElementsAre(EndsWith("refused, it is ?: the machine does not let it be read")));
    EXPECT_THAT(source->written, IsEmpty());
}

TEST_F(PublishedWritesTest, AreNotDoneLate)
{
    Take();
    Read(3);

    writes->Turn(running + 2001ms, now + 2001ms);

    EXPECT_THAT(lines, ElementsAre(EndsWith("refused, it is 3: it came too late")));
    EXPECT_THAT(source->written, IsEmpty());
}

TEST_F(PublishedWritesTest, ThatTheMachineDoesNotConfirmSaySo)
{
    Read(3);
    Take();
    writes->Turn(running, now);

    source->underWay.front()(base::Failure{"no answer"});
    writes->Turn(running, now);

    EXPECT_THAT(lines, ElementsAre(EndsWith("MW20 3 -> 17 not confirmed, it is 3: no answer")));
    EXPECT_THAT(answers, ElementsAre("w1: no answer"));
}

TEST_F(PublishedWritesTest, HaveALineAlsoWhenTheBrokerGoesMeanwhile)
{
    Read(3);
    Take();
    writes->Turn(running, now);
    Take();

    writes->GiveUp("the broker is gone");
    EXPECT_THAT(lines, ElementsAre(EndsWith("refused, it is 3: the broker is gone")));

    source->underWay.front()({});
    writes->Turn(running, now);
    EXPECT_THAT(lines.back(), EndsWith("MW20 3 -> 17 done"));
    EXPECT_THAT(source->written, ElementsAre("MW20=17"));
}

TEST_F(PublishedWritesTest, HaveALineAlsoWhenTheProgramEndsMeanwhile)
{
    Read(3);
    Take();
    Take();
    writes->Turn(running, now);

    source->underWay.front()({});
    writes->Close();

    EXPECT_THAT(
        lines,
        ElementsAre(
            EndsWith("MW20 3 -> 17 done"),
            EndsWith("MW20 3 -> 17 not confirmed, it is 3: the program has ended meanwhile")));
}

} // namespace
} // namespace plcremote
