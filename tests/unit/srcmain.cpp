#include "failonassert.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    FailOnAsserts();
    return RUN_ALL_TESTS();
}
