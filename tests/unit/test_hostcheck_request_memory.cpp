#include "request_memory.h"

#include <gmock/gmock.h>

using hostcheck::RequestMemory;

namespace {

RequestMemory& Memory()
{
    static RequestMemory memory;
    return memory;
}

std::uint8_t ByteAt(const CMD_DATA* request, std::size_t place)
{
    return reinterpret_cast<const volatile std::uint8_t*>(request)[place];
}

} // namespace

TEST(HostcheckRequestMemory, HoldsTheRequestWhileItsCallbackRuns)
{
    const CMD_DATA* const request = Memory().Open(PlcMakeReadRequest(7, "MB4"));

    EXPECT_EQ(request->key, 7);
    ByteAt(request, PLC_CMD_SIZE - 1);
    Memory().Shut(request);
    EXPECT_FALSE(RequestMemory::WasKept());
    EXPECT_FALSE(RequestMemory::WasOverread());
}

TEST(HostcheckRequestMemory, NoticesWhoReadsARequestAfterItsCallback)
{
    const CMD_DATA* const request = Memory().Open(PlcMakeReadRequest(7, "MB4"));
    Memory().Shut(request);

    EXPECT_EQ(ByteAt(request, 4), 7) << "the host goes on, to be judged further";
    EXPECT_TRUE(RequestMemory::WasKept());
    EXPECT_FALSE(RequestMemory::WasKept()) << "told once";
}

TEST(HostcheckRequestMemory, NoticesWhoReadsBeyondARequest)
{
    const CMD_DATA* const request = Memory().Open(PlcMakeReadRequest(7, "MB4"));

    ByteAt(request, PLC_CMD_SIZE);
    Memory().Shut(request);
    EXPECT_TRUE(RequestMemory::WasOverread());
    EXPECT_FALSE(RequestMemory::WasKept());
}

TEST(HostcheckRequestMemory, LeavesOtherFaultsToTheHandlerBefore)
{
    Memory();
    const auto readNowhere = [] {
        const volatile int* const nowhere = nullptr;
        return *nowhere;
    };
    EXPECT_DEATH(readNowhere(), "");
}
