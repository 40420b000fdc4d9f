#include "gui_plcprgpage.h"
#include "pointer.h"
#include "useractions.h"
#include "waitfor.h"
#include "widgets.h"

#include <gmock/gmock.h>

#include <algorithm>

using testing::ElementsAre;
using testing::IsEmpty;

// Of which rows the program page asks for the states, and when.

class PlcPrgGridRequests : public PlcPrgPage
{
protected:
    /// @return the row at the upper edge of the view.
    int TopRow() const
    {
        return m_grid->CalcUnscrolledPosition(wxPoint(0, 0)).y / m_grid->GetDefaultRowSize();
    }
};

TEST_F(PlcPrgGridRequests, RequestsTheRowsThatAResizeBringsOnScreenAtOnce)
{
    const Words small = OpenOnPage({{"OB1", 0, Networks(300)}});

    Resize({600, 700});

    const Words large = TakeRequests();
    ASSERT_FALSE(large.empty());
    EXPECT_EQ(large.back(), VisibleRange());
    EXPECT_NE(large.back(), small.back());
}

TEST_F(PlcPrgGridRequests, AResizeThatBringsNoOtherRowOnScreenRequestsNothing)
{
    OpenOnPage({{"OB1", 0, Networks(300)}});

    Resize({700, 480});

    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgGridRequests, RequestsNothingWhereOnlyNonExecutableLinesAreOnScreen)
{
    std::vector<std::string> lines = ExecutableLines(30);
    lines.insert(lines.end(), 200, "NOP 0");
    const Words before = OpenOnPage({{"OB1", 0, lines}});

    ScrollToRow(100);
    m_grid->SetScrollPending();
    Tick();
    EXPECT_EQ(VisibleRange(), "none");
    EXPECT_THAT(TakeRequests(), IsEmpty());

    // The former subscription is still in place, its answers reach rows that are not shown anew.
    AnswerSubscribed(5);
    EXPECT_EQ(Shown(0), "?/-");
    ScrollToRow(0);
    m_grid->SetScrollPending();
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
    AnswerSubscribed(6);
    EXPECT_EQ(Shown(0), "1/6");
}

TEST_F(PlcPrgGridRequests, RequestsARowOfWhichAnyColumnHasAnEdgeOnScreen)
{
    constexpr int wide = 2000;
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
    const std::vector<int> narrow = {
        m_grid->GetColSize(0), m_grid->GetColSize(1), m_grid->GetColSize(2)};
    int unitWidth = 0;
    int unused = 0;
    m_grid->GetScrollPixelsPerUnit(&unitWidth, &unused);
    const auto requests = [&](int wideColumn, int scrolledOut) {
        for (int column = 0; column < 3; ++column) {
            const auto width = narrow[static_cast<std::size_t>(column)];
            m_grid->SetColSize(column, column == wideColumn ? wide : width);
        }
        m_grid->Scroll(scrolledOut / unitWidth, 0);
        m_panel->SendPrgStateRequest(noStep, noStep);
        m_grid->ClearIdxRequestRows();
        TakeRequests();
        m_grid->DoPrgStateRequest();
        return TakeRequests().size();
    };

    EXPECT_EQ(requests(0, 0), 1U);
    EXPECT_EQ(requests(1, narrow[0]), 1U);
    EXPECT_EQ(requests(2, wide), 1U);
    EXPECT_EQ(requests(2, wide / 2), 0U);
}

TEST_F(PlcPrgGridRequests, RequestsAtMost98StepsAndMovesTheWholeRangeWithTheView)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
    m_grid->SetDefaultCellFont(m_grid->GetDefaultCellFont().Scaled(0.5F));
    m_grid->SetDefaultRowSize(m_grid->GetRowMinimalAcceptableHeight(), true);
    Resize({600, 1942});
    ASSERT_TRUE(m_grid->IsVisible(100, 0, false));
    EXPECT_EQ(TakeRequests().back(), "state 0..97 count 98");

    m_grid->Scroll(0, 1);
    m_grid->SetScrollPending();
    Tick();

    EXPECT_THAT(TakeRequests(), ElementsAre("state 1..98 count 98"));
}

TEST_F(PlcPrgGridRequests, ACellThatIsSelectedMakesTheNextTickLookForOtherRows)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
    Tick();
    ScrollToRow(100);
    Tick();
    ASSERT_THAT(TakeRequests(), IsEmpty());

    ClickCell(*m_grid, 102, 2);
    ASSERT_TRUE(WaitFor("cursor", [&] { return m_grid->GetGridCursorRow() == 102; }));
    Tick();

    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});
}

TEST_F(PlcPrgGridRequests, KeysThatMoveTheViewLeadToOneRequestAtTheNextTick)
{
    OpenOnPage({{"OB1", 0, Networks(1000)}});
    ASSERT_TRUE(Focus(*m_grid->GetGridWindow()));

    PressKey(WXK_END, wxMOD_CONTROL);
    ASSERT_TRUE(WaitFor("end", [&] { return m_grid->GetGridCursorRow() == 999; }));
    EXPECT_THAT(TakeRequests(), IsEmpty());
    Tick();
    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});

    PressKey(WXK_PAGEUP);
    PressKey(WXK_PAGEUP);
    ASSERT_TRUE(WaitFor("two pages up", [&] { return m_grid->GetGridCursorRow() < 985; }));
    EXPECT_THAT(TakeRequests(), IsEmpty());
    Tick();
    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});

    PressKey(WXK_HOME, wxMOD_CONTROL);
    ASSERT_TRUE(WaitFor("start", [&] { return m_grid->GetGridCursorRow() == 0; }));
    Tick();
    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});

    PressKey(WXK_DOWN);
    ASSERT_TRUE(WaitFor("one down", [&] { return m_grid->GetGridCursorRow() == 1; }));
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgGridRequests, TheWheelLeadsToOneRequestAtTheNextTick)
{
    OpenOnPage({{"OB1", 0, Networks(1000)}});

    TurnWheel(*m_grid->GetGridWindow(), WheelTurn::Down, 5);
    ASSERT_TRUE(WaitFor("scrolled down", [&] { return TopRow() > 3; }));
    EXPECT_THAT(TakeRequests(), IsEmpty());
    Tick();
    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});

    TurnWheel(*m_grid->GetGridWindow(), WheelTurn::Up, 10);
    ASSERT_TRUE(WaitFor("scrolled up", [&] { return TopRow() == 0; }));
    Tick();
    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});
}

TEST_F(PlcPrgGridRequests, ScrollingSidewaysDoesNotMakeTheNextTickLookForOtherRows)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}});
    m_grid->SetColSize(2, 2000);
    Tick();
    ScrollToRow(100);

    TurnWheel(*m_grid->GetGridWindow(), WheelTurn::Right, 3);
    ASSERT_TRUE(WaitFor(
        "scrolled sideways", [&] { return m_grid->CalcUnscrolledPosition(wxPoint(0, 0)).x > 0; }));
    Tick();

    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgGridRequests, TheScrollBarDrawnFromEndToEndLeadsToTheLastRows)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(2000)}});
    const wxSize size = m_grid->GetClientSize();

    Grip(*m_grid, {size.x - 3, m_grid->GetColLabelSize() + 4}, {size.x - 3, size.y + 50});
    LetGo();
    ASSERT_TRUE(WaitFor("end of the listing", [&] { return m_grid->IsVisible(1999, 0, false); }));
    EXPECT_THAT(TakeRequests(), IsEmpty());
    Tick();

    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});
    EXPECT_THAT(VisibleRange(), testing::HasSubstr("..1999 "));
}

TEST_F(PlcPrgGridRequests, AThumbThatIsStillHeldLeadsToARequestAtTheNextTick)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(2000)}});
    Tick();
    wxScrollWinEvent held(wxEVT_SCROLLWIN_THUMBTRACK, 300, wxVERTICAL);
    held.SetEventObject(m_grid);

    m_grid->ProcessWindowEvent(held);
    ASSERT_TRUE(WaitFor("scrolled", [&] { return TopRow() > 0; }));
    Tick();

    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});
}

TEST_F(PlcPrgGridRequests, AnswersThatArriveWhileTheViewMovesReachOnlyTheirOwnRows)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(2000)}});

    for (int turn = 0; turn < 20; ++turn) {
        const int before = TopRow();
        TurnWheel(*m_grid->GetGridWindow(), WheelTurn::Down, 3);
        ASSERT_TRUE(WaitFor("scrolled", [&] { return TopRow() > before; }));
        AnswerSubscribed();
        Tick();
        AnswerSubscribed();
        EXPECT_EQ(Shown(TopRow() + 2), "1/" + std::to_string(TopRow() + 2));
    }

    for (int row = 0; row < TopRow() + 5; ++row) {
        EXPECT_EQ(Shown(row), "1/" + std::to_string(row));
    }
    EXPECT_EQ(Shown(1999), "?/-");
}

TEST_F(PlcPrgGridRequests, AnotherBlockIsShownWhereTheViewStands)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(300)}, {"FB7", 300, ExecutableLines(20)}});
    ScrollToRow(200);
    m_grid->SetScrollPending();
    Tick();
    TakeRequests();

    ChooseBlock(1);

    EXPECT_EQ(TakeRequests(), Words{VisibleRange(300)});
    EXPECT_THAT(VisibleRange(300), testing::HasSubstr("..319 "));
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}
