#include "hostloop.h"

#include <gtest/gtest.h>

namespace {

int RunAllTests()
{
    return RUN_ALL_TESTS();
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    return RunHost(argc, argv, RunAllTests);
}
