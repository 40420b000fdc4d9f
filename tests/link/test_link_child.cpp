#include "child.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <poll.h>
#include <unistd.h>

// Programs beside a test.

namespace {

TEST(Child, EndsWithATestThatIsKilled)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0); // who is started has it open as long as he runs

    EXPECT_EXIT(
        {
            Child child({"sh", "-c", "echo runs; exec sleep 600"});
            child.WaitForLine("runs");
            ::raise(SIGKILL);
        },
        testing::KilledBySignal(SIGKILL),
        "");
    ::close(ends[1]);

    pollfd ended{ends[0], POLLIN, 0};
    constexpr int generous = 30000;
    EXPECT_EQ(::poll(&ended, 1, generous), 1);
    ::close(ends[0]);
}

TEST(Child, SaysMuchBeforeAnybodyReadsIt)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0); // who is started has it open as long as he runs

    const Child child({"head", "--bytes=500000", "/dev/zero"});
    ::close(ends[1]);

    pollfd ended{ends[0], POLLIN, 0};
    constexpr int generous = 30000;
    EXPECT_EQ(::poll(&ended, 1, generous), 1);
    ::close(ends[0]);
}

} // namespace
