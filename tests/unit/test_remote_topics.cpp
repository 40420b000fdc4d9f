#include "topics.h"

#include <gtest/gtest.h>

namespace plcremote {
namespace {

struct Topics : testing::Test
{
    plclink::MqttAddress address{true, "press7", "broker", 8883, "hall1", "press7"};
};

TEST_F(Topics, LieBelowPlantAndMachine)
{
    EXPECT_EQ(MachineTopic(address, "state"), "plc/hall1/press7/state");
    EXPECT_EQ(
        ViewerTopic(address, "watch", {"service", "w1"}), "plc/hall1/press7/watch/service/w1");
}

TEST_F(Topics, AreTakenApart)
{
    const auto state = ParseTopic(address, "plc/hall1/lift/state");
    const auto watch = ParseTopic(address, "plc/hall1/press7/watch/service/w1");

    ASSERT_TRUE(state && watch);
    EXPECT_EQ(state->machine, "lift");
    EXPECT_EQ(state->kind, "state");
    EXPECT_FALSE(state->viewer);
    ASSERT_TRUE(watch->viewer);
    EXPECT_EQ(watch->viewer->user, "service");
    EXPECT_EQ(watch->viewer->window, "w1");
}

TEST_F(Topics, OfAnotherPlantOrShapeAreNone)
{
    for (const char* text :
         {"",
          "plc",
          "plc/hall1",
          "plc/hall1/press7",
          "plc/hall2/press7/state",
          "plc/hall1/press7/watch/service",
          "plc/hall1/press7/watch/service/w1/x",
          "plc/hall1//state",
          "plc/hall1/press 7/state",
          "plc/hall1/press7/watch/service/"}) {
        EXPECT_FALSE(ParseTopic(address, text)) << text;
    }
}

TEST_F(Topics, ViewersAreOrderedByUserAndWindow)
{
    EXPECT_TRUE((Viewer{"a", "2"} < Viewer{"b", "1"}));
    EXPECT_TRUE((Viewer{"a", "1"} < Viewer{"a", "2"}));
    EXPECT_TRUE((Viewer{"a", "1"} == Viewer{"a", "1"}));
    EXPECT_FALSE((Viewer{"a", "1"} == Viewer{"a", "2"}));
}

} // namespace
} // namespace plcremote
