#include "picture.h"

#include <gmock/gmock.h>

using plccheck::Box;
using plccheck::ChangedPixels;
using plccheck::Difference;
using plccheck::Picture;

namespace {

Picture Black(int width, int height)
{
    const std::size_t bytes = std::size_t{Picture::channels} * static_cast<unsigned>(width) *
                              static_cast<unsigned>(height);
    return {width, height, std::vector<std::uint8_t>(bytes)};
}

/// @param channel of the pixel that is lit.
void Light(Picture& picture, int x, int y, int channel)
{
    const int at = (y * picture.width + x) * Picture::channels + channel;
    picture.pixels.at(static_cast<std::size_t>(at)) = 1;
}

} // namespace

TEST(PictureTest, DiffersNowhereFromOneThatIsTheSame)
{
    EXPECT_FALSE(Difference(Black(4, 3), Black(4, 3)));
}

TEST(PictureTest, CannotBeComparedWithOneOfAnotherSize)
{
    EXPECT_TRUE(Black(4, 3) != Black(3, 4));
    EXPECT_FALSE(Difference(Black(4, 3), Black(3, 4)));
}

TEST(PictureTest, DiffersInTheSmallestBoxAroundAllThatChanged)
{
    Picture changed = Black(8, 6);
    Light(changed, 5, 1, 2);
    Light(changed, 2, 4, 0);
    const auto box = Difference(Black(8, 6), changed);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->x, 2);
    EXPECT_EQ(box->y, 1);
    EXPECT_EQ(box->width, 4);
    EXPECT_EQ(box->height, 4);
}

TEST(PictureTest, DiffersInASingleCorner)
{
    Picture changed = Black(8, 6);
    Light(changed, 7, 5, 2);
    const auto box = Difference(Black(8, 6), changed);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->x, 7);
    EXPECT_EQ(box->y, 5);
    EXPECT_EQ(box->width, 1);
    EXPECT_EQ(box->height, 1);
}

TEST(PictureTest, ChangesInTheSameShapeWhateverTheColours)
{
    const Box box{1, 1, 2, 2};
    Picture red = Black(4, 4);
    Light(red, 2, 1, 0);
    Picture blue = Black(4, 4);
    Light(blue, 2, 1, 2);
    EXPECT_THAT(
        ChangedPixels(Black(4, 4), red, box), testing::ElementsAre(false, true, false, false));
    EXPECT_EQ(ChangedPixels(Black(4, 4), blue, box), ChangedPixels(Black(4, 4), red, box));
}
