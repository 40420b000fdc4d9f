#include "gui_plcprgpage.h"
#include "records.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>

// The program page and its host: which steps it asks for, and what it shows of the answers.

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PlcPrgPage, RequestsNothingBeforeItIsTurnedTo)
{
    WriteFile({Block("OB1", 0, 100)});
    Open();
    m_panel->Layout();
    m_grid->DoPrgStateRequest();
    Tick();

    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, RequestsWhatIsOnScreenWhenItIsTurnedTo)
{
    const Words requests = OpenOnPage({Block("OB1", 40, 100)});

    EXPECT_EQ(requests, Words{VisibleRange(40)});
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, WithNothingLaidOutWhenItIsTurnedToRequestsAtTheNextTick)
{
    WriteFile({Block("OB1", 0, 100)});
    Open();
    wxWindow* gridWindow = m_grid->GetGridWindow();
    const wxSize size = gridWindow->GetSize();
    gridWindow->SetSize(0, 0);
    m_grid->TakeScrollPending(); // set when the cursor came to the first row
    m_notebook->SetSelection(1);
    EXPECT_THAT(TakeRequests(), IsEmpty());

    gridWindow->SetSize(size);
    Tick();

    EXPECT_EQ(TakeRequests(), Words{VisibleRange()});
}

TEST_F(PlcPrgPage, StopsOnceWhenItIsTurnedAwayFrom)
{
    OpenOnPage({Block("OB1", 0, 100)});

    TurnTo(0);
    EXPECT_THAT(TakeRequests(), ElementsAre("stop"));

    wxShowEvent hidden(m_panel->GetId(), false);
    m_panel->ProcessWindowEvent(hidden);
    m_panel->FinishPrgStateRequest();
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, RequestsAnewWhenItIsTurnedToAgain)
{
    const Words atFirst = OpenOnPage({Block("OB1", 0, 100)});
    TurnTo(0);
    TakeRequests();

    TurnTo(1);

    EXPECT_EQ(TakeRequests(), atFirst);
}

TEST_F(PlcPrgPage, RequestsNothingWhenABlockIsLoadedBehindAnotherPage)
{
    OpenOnPage({Block("OB1", 0, 100), Block("FB7", 100, 100)});
    TurnTo(0);
    TakeRequests();

    ChooseBlock(1);
    m_grid->SetScrollPending();
    Tick();

    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, StopsAlsoInAFrameThatIsHiddenAlready)
{
    OpenOnPage({Block("OB1", 0, 100)});
    m_frame->Hide();
    ASSERT_TRUE(m_panel->IsShown());

    m_panel->FinishPrgStateRequest();
    EXPECT_THAT(TakeRequests(), ElementsAre("stop"));

    m_grid->SetScrollPending();
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, ReplacesARangeWithoutAStopBetween)
{
    OpenOnPage({Block("OB1", 0, 100), Block("FB7", 100, 100)});

    ChooseBlock(1);

    EXPECT_EQ(TakeRequests(), Words{VisibleRange(100)});
}

TEST_F(PlcPrgPage, ShowsAndRequestsTheBlockThatTheOperatorChooses)
{
    OpenOnPage({Block("OB1", 0, 100), Block("FB7", 100, 100)});
    ASSERT_TRUE(Focus(*m_combo));

    PressKey(WXK_DOWN);

    ASSERT_TRUE(WaitFor("request", [&] { return !m_host.requests.empty(); }));
    EXPECT_EQ(TakeRequests(), Words{VisibleRange(100)});
    EXPECT_EQ(m_grid->GetCellValue(0, 2), "FB7 0");
}

TEST_F(PlcPrgPage, LoadsTheBlockOnShowAnewWithoutAnotherRequest)
{
    OpenOnPage({Block("OB1", 0, 100)});
    AnswerSubscribed();
    ASSERT_EQ(Shown(3), "1/3");

    ChooseBlock(0);

    EXPECT_EQ(Shown(3), "?/-");
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, ShowsTheAnswersOfTheFormerRequestAlsoInABlockLoadedAnew)
{
    OpenOnPage({Block("OB1", 0, 5)});
    ChooseBlock(0);

    AnswerSubscribed(7);

    EXPECT_EQ(Shown(0), "1/7");
    EXPECT_EQ(Shown(4), "1/11");
}

TEST_F(PlcPrgPage, ShowsTheStatesAndValuesOfAnAnswer)
{
    OpenOnPage({{"OB1", 40, {"a", "b", "NOP", "c", "d", "e"}}});

    m_panel->AnswerPrgState(
        PrgStateAnswerRecord(40, 44, {{1, 0}, {0, -1}, {2, 0x7FFFFFFF}, {1, -2}, {1, 123456789}}));

    EXPECT_EQ(Shown(0), "1/0");
    EXPECT_EQ(Shown(1), "0/-");
    EXPECT_EQ(Shown(2), "-/-");
    EXPECT_EQ(Shown(3), "0/-");
    EXPECT_EQ(Shown(4), "1/-2");
    EXPECT_EQ(Shown(5), "1/123456789");
}

TEST_F(PlcPrgPage, DropsAnAnswerForOtherSteps)
{
    OpenOnPage({Block("OB1", 0, 3)});

    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 1, {{1, 1}, {1, 1}}));
    m_panel->AnswerPrgState(PrgStateAnswerRecord(1, 2, {{1, 1}, {1, 1}}));
    m_panel->AnswerPrgState(PrgStateAnswerRecord(INT32_MIN, INT32_MAX, {}));

    EXPECT_EQ(Shown(0), "?/-");
    EXPECT_EQ(Shown(1), "?/-");
    EXPECT_EQ(Shown(2), "?/-");
}

TEST_F(PlcPrgPage, DropsALateAnswerOfTheFormerBlock)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 3, 3)});
    ChooseBlock(1);

    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 2, {{1, 1}, {1, 1}, {1, 1}}));

    EXPECT_EQ(Shown(0), "?/-");
}

TEST_F(PlcPrgPage, DropsEveryAnswerWhileNothingIsSubscribed)
{
    OpenOnPage({{"OB1", 0, {"NOP", "a"}}});
    TurnTo(0);

    m_panel->AnswerPrgState(PrgStateAnswerRecord(-1, -1, {{1, 5}}));
    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 0, {{1, 5}}));

    EXPECT_EQ(Shown(0), "-/-");
    EXPECT_EQ(Shown(1), "?/-");
}

TEST_F(PlcPrgPage, RowsThatAreNotRequestedKeepWhatTheyShowedLast)
{
    OpenOnPage({Block("OB1", 0, 200)});
    AnswerSubscribed();
    ASSERT_EQ(Shown(1), "1/1");

    ScrollToRow(100);
    m_grid->SetScrollPending();
    Tick();
    AnswerSubscribed();
    EXPECT_EQ(Shown(1), "1/1");
    EXPECT_EQ(Shown(101), "1/101");

    ScrollToRow(0);
    m_grid->SetScrollPending();
    Tick();
    AnswerSubscribed(1000);
    EXPECT_EQ(Shown(1), "1/1001");
    EXPECT_EQ(Shown(101), "1/101");
}

TEST_F(PlcPrgPage, AnAnswerWithoutAnyRequestedRowShowsNothing)
{
    OpenOnPage({Block("OB1", 0, 5), {"FB7", 5, {"NOP", "BLD", "TITLE"}}});
    ChooseBlock(1);
    ASSERT_THAT(TakeRequests(), IsEmpty());

    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 4, {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}}));

    EXPECT_EQ(Shown(0), "-/-");
    EXPECT_EQ(Shown(1), "-/-");
}

TEST_F(PlcPrgPage, SendsNothingMoreOnceDisconnected)
{
    OpenOnPage({Block("OB1", 0, 100)});
    m_panel->Disconnect();

    ScrollToRow(50);
    m_grid->SetScrollPending();
    Tick();
    TurnTo(0);

    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, WithoutACallbackOfTheHostWorksAllTheSame)
{
    m_host.init.pfnPrgStateRequest = nullptr;

    EXPECT_THAT(OpenOnPage({Block("OB1", 0, 3)}), IsEmpty());

    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 2, {{1, 1}, {1, 1}, {1, 1}}));
    EXPECT_EQ(Shown(2), "1/1");
}

TEST_F(PlcPrgPage, MayBeDisconnectedInsideItsOwnRequest)
{
    WriteFile({Block("OB1", 0, 100)});
    Open();
    m_host.reaction = [this](const RecordedRequest& /*request*/) {
        m_panel->FinishPrgStateRequest();
        m_panel->Disconnect();
    };

    TurnTo(1);
    Tick();
    TurnTo(0);

    EXPECT_THAT(TakeRequests(), testing::SizeIs(1));
}

TEST_F(PlcPrgPage, ABlockChosenInsideARequestOutlivesIt)
{
    WriteFile({Block("OB1", 0, 100), Block("FB7", 100, 2)});
    Open();
    bool chosen = false;
    m_host.reaction = [this, &chosen](const RecordedRequest& /*request*/) {
        if (!chosen) {
            chosen = true;
            ChooseBlock(1);
        }
    };

    TurnTo(1);

    EXPECT_EQ(m_host.requests.back().InWords(), "state 100..101 count 2");
    m_panel->AnswerPrgState(PrgStateAnswerRecord(100, 101, {{1, 5}, {0, 6}}));
    EXPECT_EQ(Shown(0), "1/5");
    EXPECT_EQ(Shown(1), "0/6");
}
