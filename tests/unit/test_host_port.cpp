#include "messageof.h"
#include "port.h"
#include "test_host_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace plchost {
namespace {

using testing::HasSubstr;

struct RecordingHandler : RequestHandler
{
    void Request(const CMD_DATA& request) override { requests.push_back(request); }

    std::vector<CMD_DATA> requests;
};

struct RequestPortTest : testing::Test
{
    RecordingHandler handler;
    ThreadRule threads{std::this_thread::get_id()};
};

TEST_F(RequestPortTest, EveryCallbackReachesTheHandler)
{
    const RequestPort port(handler, threads, false);
    const PLC_DBG_INIT init = port.InitRecord("/a/b/prog");

    for (const auto callback :
         {init.pfnReadVarRequest,
          init.pfnWriteVarRequest,
          init.pfnPrgStateRequest,
          init.pfnDeleteVarRequest}) {
        const CMD_DATA request = PlcMakeReadRequest(5, "EB10");
        callback(&request);
    }

    ASSERT_EQ(handler.requests.size(), 4U);
    EXPECT_EQ(BytesOf(handler.requests[3]), BytesOf(PlcMakeReadRequest(5, "EB10")));
    EXPECT_TRUE(threads.Check());
}

TEST_F(RequestPortTest, PassesOnThePathAndTheHeight)
{
    const RequestPort tall(handler, threads, true);
    const PLC_DBG_INIT init = tall.InitRecord("/a/b/prog");

    EXPECT_STREQ(init.szPath, "/a/b/prog");
    EXPECT_EQ(init.pfnTallFrame(), 1);
    EXPECT_EQ(RequestPort(handler, threads, false).InitRecord("").pfnTallFrame(), 0);
}

TEST_F(RequestPortTest, ACallbackThatOutlivesThePortIsServedByNobody)
{
    const PLC_DBG_INIT init = RequestPort(handler, threads, false).InitRecord("/a/b/prog");
    const CMD_DATA request = PlcMakeReadRequest(5, "EB10");

    EXPECT_EQ(init.pfnReadVarRequest(&request), 0);
    EXPECT_EQ(init.pfnTallFrame(), 0);

    EXPECT_TRUE(handler.requests.empty());
}

TEST_F(RequestPortTest, ACallbackOnAnotherThreadIsNamed)
{
    const RequestPort port(handler, threads, false);
    const PLC_DBG_INIT init = port.InitRecord("/a/b/prog");
    const CMD_DATA request = PlcMakeStopRequest();

    std::thread([&] { init.pfnPrgStateRequest(&request); }).join();
    std::thread([&] { init.pfnDeleteVarRequest(&request); }).join();

    EXPECT_THAT(MessageOf(threads.Check()), HasSubstr("pfnPrgStateRequest came on another thread"));
}

} // namespace
} // namespace plchost
