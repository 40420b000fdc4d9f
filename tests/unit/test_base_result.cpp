#include "messageof.h"
#include "result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using base::Failure;
using base::Result;

Result<std::string> HalfOf(const std::string& text)
{
    if (text.size() % 2 != 0) {
        return Failure{"\"" + text + "\" has no half"};
    }
    return text.substr(text.size() / 2);
}

TEST(Result, HasTheValueThatWasReturned)
{
    const auto half = HalfOf("abcd");

    ASSERT_TRUE(half);
    EXPECT_EQ(*half, "cd");
    EXPECT_EQ(half->size(), 2U);
    EXPECT_EQ(MessageOf(half), "");
}

TEST(Result, SaysWhyThereIsNoValue)
{
    const auto half = HalfOf("abc");

    EXPECT_FALSE(half);
    EXPECT_EQ(half.Message(), "\"abc\" has no half");
}

TEST(Result, GivesAwayAValueThatCannotBeCopied)
{
    Result<std::unique_ptr<int>> made = std::make_unique<int>(5);

    const std::unique_ptr<int> taken = *std::move(made);

    EXPECT_EQ(*taken, 5);
}

TEST(ResultOfNothing, IsDoneUnlessItSaysWhyNot)
{
    const Result<void> done = {};
    const Result<void> failed = Failure{"the disk is full"};

    EXPECT_TRUE(done);
    EXPECT_FALSE(failed);
    EXPECT_EQ(failed.Message(), "the disk is full");
}

} // namespace
