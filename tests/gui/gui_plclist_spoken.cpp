#include "filledwatchpage.h"

#include <gtk/gtk.h>

namespace {

/// What a screen reader is told of the list.
class SpokenRow : public VarGrid
{
protected:
    std::string Words() const
    {
        AtkObject* list = gtk_widget_get_accessible(grid->GetGridWindow()->GetHandle());
        const char* name = atk_object_get_name(list);
        return name == nullptr ? "" : name;
    }

    testing::AssertionResult WaitForWords(const std::string& words) const
    {
        return WaitFor("\"" + words + "\"", [&] { return Words() == words; });
    }
};

} // namespace

TEST_F(SpokenRow, BeginsWithTheCursorsCell)
{
    GoTo(0, varColumnOperand);
    EXPECT_TRUE(WaitForWords("T2: MB 1, T3: 1, T4: T30"));

    PressKey(WXK_DOWN);
    EXPECT_TRUE(WaitForWords("T2: MW 2, T3: 0002, T4: T31"));

    PressKey(WXK_RIGHT);
    EXPECT_TRUE(WaitForWords("T3: 0002, T4: T31, T2: MW 2"));
}

TEST_F(SpokenRow, IsThatOfTheNewestAnswer)
{
    GoTo(0, varColumnValue);
    ASSERT_TRUE(WaitForWords("T3: 1, T4: T30, T2: MB 1"));

    Answer(0, 42);

    EXPECT_TRUE(WaitForWords("T3: 42, T4: T30, T2: MB 1"));
}

TEST_F(SpokenRow, IsNoneOfAnEmptyList)
{
    GoTo(0, varColumnValue);
    ASSERT_TRUE(WaitForWords("T3: 1, T4: T30, T2: MB 1"));

    panel->Reset();

    EXPECT_TRUE(WaitForWords(""));
}
