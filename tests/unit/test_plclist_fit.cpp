#include "plclist_fit.h"

#include <gtest/gtest.h>

TEST(LastColumnWidth, IsWhatTheOtherColumnsLeaveLessTheMargin)
{
    EXPECT_EQ(LastColumnWidth(/*virtualWidth=*/500, 60, 50), 382);
}

TEST(LastColumnWidth, IsNegativeWhereNothingIsLeft)
{
    EXPECT_EQ(LastColumnWidth(/*virtualWidth=*/100, 60, 50), -8);
    EXPECT_EQ(LastColumnWidth(/*virtualWidth=*/110, 60, 50), -8);
    EXPECT_EQ(LastColumnWidth(/*virtualWidth=*/118, 60, 50), 0);
    EXPECT_EQ(LastColumnWidth(/*virtualWidth=*/0, 0, 0), -8);
}

TEST(IsColumnWidth, IsWhatShowsAColumn)
{
    EXPECT_TRUE(IsColumnWidth(1));
    EXPECT_FALSE(IsColumnWidth(0));
    EXPECT_FALSE(IsColumnWidth(-8));
}
