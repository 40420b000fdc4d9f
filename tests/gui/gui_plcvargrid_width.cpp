#include "filledwatchpage.h"

#include <gtk/gtk.h>

namespace {

class ListWidth : public VarGrid
{
protected:
    bool ScrollsSideways() const
    {
        GtkAdjustment* bar =
            gtk_scrolled_window_get_hadjustment(GTK_SCROLLED_WINDOW(grid->GetHandle()));
        return gtk_adjustment_get_upper(bar) > gtk_adjustment_get_page_size(bar);
    }
};

} // namespace

TEST_F(ListWidth, IsFilledByTheColumnsAtEveryWidth)
{
    const int height = grid->GetSize().y;
    const int operands = grid->GetColSize(varColumnOperand);
    const int values = grid->GetColSize(varColumnValue);
    const auto expectColumns = [&](int width) {
        grid->SetSize(width, height);
        const int room = grid->GetClientSize().x - operands - values;
        const int left = room - 8;
        EXPECT_EQ(grid->GetColSize(varColumnOperand), operands) << width;
        EXPECT_EQ(grid->GetColSize(varColumnValue), values) << width;
        EXPECT_TRUE(grid->IsColShown(varColumnFormat)) << width;
        if (left >= grid->GetColMinimalAcceptableWidth()) {
            EXPECT_EQ(grid->GetColSize(varColumnFormat), left) << width;
        }
        EXPECT_EQ(ScrollsSideways(), grid->GetColSize(varColumnFormat) > room) << width;
    };

    for (int width = 500; width >= 60; --width) {
        expectColumns(width);
    }
    for (int width = 60; width <= 500; ++width) {
        expectColumns(width);
    }
}
