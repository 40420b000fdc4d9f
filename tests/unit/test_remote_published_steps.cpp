#include "published_steps.h"
#include "scriptedsource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace plcremote {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Viewer first{"service", "w1"};
const Viewer second{"guest", "w2"};

struct PublishedStepsTest : testing::Test
{
    PublishedStepsTest()
    {
        auto made = std::make_unique<ScriptedSource>();
        source = made.get();
        link.emplace(std::move(made));
        link->Start();
        steps.emplace(*link, viewers, [this](const Viewer& viewer, const AnswerMessage& message) {
            const auto* refusal = std::get_if<RefusalMessage>(&message);
            answers.push_back(viewer.user + ": " + (refusal ? refusal->reason : "states"));
        });
    }

    void Ask(const Viewer& viewer)
    {
        viewers.WatchSteps(viewer, plc::StepRange{3, 4}, now);
        steps->Serve();
    }

    void Record() const { source->events->OnSteps({3, 4}, std::vector<plc::StepState>(2)); }

    plclink::Clock::time_point now = plclink::Clock::now();
    ScriptedSource* source = nullptr;
    std::optional<plclink::MachineLink> link;
    Viewers viewers;
    std::optional<PublishedSteps> steps;
    std::vector<std::string> answers;
};

TEST_F(PublishedStepsTest, GoToWhoAskedLastAndTheOtherIsTold)
{
    Ask(first);
    EXPECT_EQ(steps->User(), "service");
    Ask(second);
    EXPECT_EQ(steps->User(), "guest");

    Record();
    steps->Tell();

    EXPECT_THAT(answers, ElementsAre("service: they go to guest now", "guest: states"));
}

TEST_F(PublishedStepsTest, AreToldOnce)
{
    Ask(first);
    Record();

    steps->Tell();
    steps->Tell();

    EXPECT_THAT(answers, ElementsAre("service: states"));
}

TEST_F(PublishedStepsTest, GoToWhoLooksAtTheMachine)
{
    struct : plclink::Client
    {
    } local;

    Ask(first);
    link->Join(local);
    link->WatchSteps(local, plc::StepRange{0, 1});

    steps->Turn(now);

    EXPECT_THAT(answers, ElementsAre("service: they are shown at the machine now"));
    EXPECT_EQ(steps->User(), "");
    Ask(first);
    EXPECT_EQ(source->steps->first, 3U);
    link->Leave(local);
}

TEST_F(PublishedStepsTest, EndAtTheMachineWithTheirViewer)
{
    Ask(first);
    ASSERT_TRUE(source->steps);

    viewers.WatchSteps(first, std::nullopt, now);
    steps->Serve();

    EXPECT_FALSE(source->steps);
    EXPECT_EQ(steps->User(), "");
    EXPECT_THAT(answers, IsEmpty());
}

} // namespace
} // namespace plcremote
