#include "gui_plcprgpage.h"
#include "pointer.h"
#include "useractions.h"
#include "waitfor.h"

// What becomes of a scroll bar that goes while the operator holds it.

class PlcPrgScrollBar : public PlcPrgPage
{
protected:
    void OpenAndHold()
    {
        OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
        const int right = m_grid->GetClientSize().x - 3;
        const int top = m_grid->GetColLabelSize() + 4;
        Grip(*m_grid, {right, top}, {right, top + 20});
    }

    /// @return success when a row that is clicked is selected.
    testing::AssertionResult TakesAClick()
    {
        ScrollToRow(100);
        ClickCell(*m_grid, 102, 2);
        return WaitFor("cursor", [this] { return m_grid->GetGridCursorRow() == 102; });
    }
};

TEST_F(PlcPrgScrollBar, LetGoAfterItsPageWasTurnedLeavesTheListItsClicks)
{
    OpenAndHold();

    TurnTo(0);
    LetGo();
    TurnTo(1);

    EXPECT_TRUE(TakesAClick());
}

TEST_F(PlcPrgScrollBar, LetGoAfterItsWindowHasGoneLeavesTheNextWindowItsClicks)
{
    OpenAndHold();

    delete m_frame;
    LetGo();
    Open();
    TurnTo(1);

    EXPECT_TRUE(TakesAClick());
}
