#include "test_host_bridge.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace plchost {
namespace {

using namespace std::chrono_literals;
using plclink::refreshTime;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(BridgeTest, AReadIsAnsweredAfterTheNextCycle)
{
    Set("EB10", 17);

    Watch(5, "EB10");
    EXPECT_THAT(Values(), IsEmpty());
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=17"));
}

TEST_F(BridgeTest, AnUnchangedValueIsAnsweredOnceASecond)
{
    Watch(5, "EB10");
    Cycle();
    Values();

    Cycle(refreshTime - 1ms);
    EXPECT_THAT(Values(), IsEmpty());
    Cycle(1ms);
    EXPECT_THAT(Values(), ElementsAre("5=0"));
    Cycle(refreshTime - 1ms);
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(BridgeTest, AChangedValueIsAnsweredAfterItsCycle)
{
    Watch(5, "EB10");
    Cycle();
    Values();

    Set("EB10", 1);
    Cycle();
    EXPECT_THAT(Values(), ElementsAre("5=1"));
    Cycle();
    EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(BridgeTest, AReadThatIsNeverStartedIsAnsweredOnce)
{
    bridge.Request(PlcMakeReadRequest(5, "EB10"));
    Cycle();
    Set("EB10", 1);
    Cycle(refreshTime);

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, AReleasedVariableIsNotAnsweredAnyMore)
{
    Watch(5, "EB10");
    Watch(6, "EB11");
    Cycle();
    Values();

    bridge.Request(PlcMakeDeleteRequest(5, PLC_DELETE_ARG_RELEASE));
    Set("EB10", 1);
    Set("EB11", 1);
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("6=1"));
}

TEST_F(BridgeTest, AReleaseOfAnUnknownKeyChangesNothing)
{
    Watch(5, "EB10");

    bridge.Request(PlcMakeDeleteRequest(9, PLC_DELETE_ARG_RELEASE));
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, AKeyThatComesAgainStandsForTheNewOperand)
{
    Set("EB10", 1);
    Set("MW20", 2);
    Watch(5, "EB10");
    Watch(5, "MW20");
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=2"));
}

TEST_F(BridgeTest, TwoKeysForOneOperandAreBothAnswered)
{
    Watch(5, "EB10");
    Watch(6, "EB10");
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0", "6=0"));
}

TEST_F(BridgeTest, AValueThatNobodyTookIsAnsweredAgain)
{
    sink.open = false;
    Watch(5, "EB10");
    Cycle();
    sink.open = true;
    Cycle();
    Cycle();

    EXPECT_THAT(Values(), ElementsAre("5=0"));
}

TEST_F(BridgeTest, ValuesAreAnsweredAlsoWhileThePlcStands)
{
    Watch(5, "EB10");
    StandStill();
    Set("EB10", 1);
    StandStill();

    EXPECT_THAT(Values(), ElementsAre("5=0", "5=1"));
}

TEST_F(BridgeTest, EveryAreaAndWidthIsServed)
{
    Set("E0.7", 1);
    Set("AB63", 200);
    Set("MW510", 0xFFFE);
    Set("DB10.DBD100", 0x80000000);
    Set("DB1.DBX10.3", 1);
    image.TimerAt(5).Drive(plc::TimerKind::Pulse, true, 300);
    image.CounterAt(12).SetValue(7);

    Watch(0, "E0.7");
    Watch(1, "AB63");
    Watch(2, "MW510");
    Watch(3, "DB10.DBD100");
    Watch(4, "DB1.DBX10.3");
    Watch(5, "T5");
    Watch(6, "Z12");
    Cycle();

    EXPECT_THAT(
        Values(), ElementsAre("0=1", "1=200", "2=65534", "3=-2147483648", "4=1", "5=300", "6=7"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(BridgeTest, AnOperandThatDoesNotExistIsLoggedAndAnsweredByNothing)
{
    Watch(5, "DB5.DBW2");
    Watch(6, "");
    bridge.Request(PlcMakeWriteRequest("MB512", 1));
    Cycle();

    EXPECT_THAT(Values(), IsEmpty());
    EXPECT_THAT(log, ElementsAre(HasSubstr("\"DB5.DBW2\""), HasSubstr("\"\"")));
    EXPECT_THAT(warnings, ElementsAre(HasSubstr("\"MB512\"")));
}

TEST_F(BridgeTest, AWriteArrivesBetweenTwoCyclesAndIsAnsweredAtOnce)
{
    Watch(5, "MB3");
    Cycle();
    Values();

    bridge.Request(PlcMakeWriteRequest("MB3", -1));
    EXPECT_EQ(Get("MB3"), 0U);
    Cycle();

    EXPECT_EQ(Get("MB3"), 0xFFU);
    EXPECT_THAT(Values(), ElementsAre("5=255"));
}

TEST_F(BridgeTest, AWriteIsDoneOnce)
{
    bridge.Request(PlcMakeWriteRequest("MW4", 77));
    Cycle();
    Set("MW4", 1);
    Cycle();

    EXPECT_EQ(Get("MW4"), 1U);
}

TEST_F(BridgeTest, WritesAreDoneInTheirOrder)
{
    bridge.Request(PlcMakeWriteRequest("MW4", 1));
    bridge.Request(PlcMakeWriteRequest("MB5", 2));
    bridge.Request(PlcMakeWriteRequest("M5.7", 1));
    Cycle();

    EXPECT_EQ(Get("MW4"), 0x82U);
}

TEST_F(BridgeTest, AnUnknownCommandIsLogged)
{
    bridge.Request(RecordOfBytes({0x34, 0x12, 6, 0, 0, 0}));

    EXPECT_THAT(log, ElementsAre(HasSubstr("unknown command")));
}

TEST_F(BridgeTest, ForgottenSubscriptionsAreNotAnsweredButWritesAreDone)
{
    Watch(5, "MB3");
    bridge.Request(PlcMakePrgStateRequest(1, 2));
    bridge.Request(PlcMakeWriteRequest("MB3", 9));

    bridge.Forget();
    Cycle();
    Cycle();

    EXPECT_TRUE(sink.Take().empty());
    EXPECT_EQ(Get("MB3"), 9U);
    EXPECT_FALSE(program.watched);
}

TEST_F(BridgeTest, RequestsAndCyclesMayRunAtTheSameTime)
{
    std::atomic<bool> done{false};
    program.states = {{true, 17}};
    std::thread plc([&] {
        while (!done) {
            Cycle();
        }
    });

    for (int i = 0; i < 200; ++i) {
        Watch(1, "MB3");
        bridge.Request(PlcMakeWriteRequest("MB3", i));
        bridge.Request(PlcMakePrgStateRequest(1, 1));
        bridge.Request(PlcMakeDeleteRequest(1, PLC_DELETE_ARG_RELEASE));
    }
    bridge.Request(PlcMakeStopRequest());
    done = true;
    plc.join();
    sink.Take();
    Cycle();

    EXPECT_TRUE(sink.Take().empty());
    EXPECT_EQ(Get("MB3"), 199U);
}

} // namespace
} // namespace plchost
