#include "plcdebugframe_texts.h"

#include <gtest/gtest.h>

TEST(StartDirectory, IsWhatStandsBeforeTheLastSlash)
{
    EXPECT_EQ(StartDirectory("/a/b/prog"), "/a/b");
    EXPECT_EQ(StartDirectory("/a/b/c/"), "/a/b");
    EXPECT_EQ(StartDirectory("a/prog"), "a");
    EXPECT_EQ(StartDirectory("/prog"), "");
}

TEST(StartDirectory, DropsOnlyOneTrailingSlash)
{
    EXPECT_EQ(StartDirectory("/a/b/c//"), "/a/b/c");
}

TEST(StartDirectory, OfAPrefixWithoutSlashIsThePrefix)
{
    EXPECT_EQ(StartDirectory("prog"), "prog");
    EXPECT_EQ(StartDirectory("prog/"), "prog");
    EXPECT_EQ(StartDirectory(""), "");
}

TEST(StartDirectory, OfTheRootIsEmpty)
{
    EXPECT_EQ(StartDirectory("/"), "");
}

TEST(ItemLabel, CarriesTheAccelerator)
{
    EXPECT_EQ(ItemLabel("Open", "O"), "Open\tCtrl-O");
}

TEST(ItemLabel, HasNoAcceleratorForAnEmptyLetterAndForThreePoints)
{
    EXPECT_EQ(ItemLabel("Open", ""), "Open");
    EXPECT_EQ(ItemLabel("Open", "..."), "Open");
}

TEST(ItemLabel, TakesAnyOtherTextAsItStands)
{
    EXPECT_EQ(ItemLabel("Open", ".."), "Open\tCtrl-..");
    EXPECT_EQ(ItemLabel("&Open", "F4"), "&Open\tCtrl-F4");
}

TEST(ItemLabel, IsABlankForAMissingLabelSoThatTheToolkitAddsNoneOfItsOwn)
{
    EXPECT_EQ(ItemLabel("", ""), " ");
    EXPECT_EQ(ItemLabel("", "..."), " ");
    EXPECT_EQ(ItemLabel("", "O"), " \tCtrl-O");
}
