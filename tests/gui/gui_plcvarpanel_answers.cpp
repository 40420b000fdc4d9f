#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>
#include <wx/region.h>

#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VarPanelAnswers : public WatchPage
{
};

class VarPanelRelease : public WatchPage
{
};

} // namespace

// ---- Answers

TEST_F(VarPanelAnswers, ShowsAnAnswerSignExtendedByTheVariablesSize)
{
    Load({"MB1/D", "MW2/H", "MD4/G", "M5.0/B", "T5/D"});

    Answer(0, 0xFF);
    Answer(1, 0x8000);
    Answer(2, 0x3FC00000);
    Answer(3, 3);
    Answer(4, -5);

    EXPECT_THAT(Column(1), ElementsAre("-1", "FFFF8000", "1.500000", "1", "-5"));
}

TEST_F(VarPanelAnswers, RefreshesTheWholeRowForAnEqualAnswerToo)
{
    Load({"MB1/D"});
    Answer(0, 5);
    for (int column = 0; column < 3; ++column) {
        grid->SetCellValue(0, column, "x");
    }

    Answer(0, 5);

    EXPECT_EQ(Cell(0, 0), "MB 1");
    EXPECT_EQ(Cell(0, 1), "5");
    EXPECT_EQ(Cell(0, 2), "T30");
}

TEST_F(VarPanelAnswers, ShowsAnAnswerOfZeroInsteadOfTheQuestionMark)
{
    Load({"MB1/D"});

    Answer(0, 0);

    EXPECT_EQ(Cell(0, 1), "0");
}

TEST_F(VarPanelAnswers, DropsAnAnswerWithAnUnknownId)
{
    Load({"MB1/D"});

    Answer(1, 5);
    Answer(65535, 5);

    EXPECT_THAT(Column(1), ElementsAre("?"));
}

TEST_F(VarPanelAnswers, GivesEveryAnswerToTheFirstVariableWithItsId)
{
    Load({"MB1/D", "MB2/D"});

    Answer(0, 1);
    Answer(1, 2);
    Answer(0, 3);

    EXPECT_THAT(Column(1), ElementsAre("3", "2"));
}

TEST_F(VarPanelAnswers, WidensItsColumnsForALongerAnswer)
{
    Load({"MD0/B"});
    const int before = grid->GetColSize(1);

    Answer(0, -1);

    EXPECT_GT(grid->GetColSize(1), before);
}

TEST_F(VarPanelAnswers, PaintsTheCellThatAnAnswerHasChangedAndNothingForAnEqualOne)
{
    Load({"MB1/D", "MB2/D"});
    Answer(0, 5);
    Answer(1, 6);
    WaitThreeTicks(); // all that is due has been painted
    wxRegion painted;
    grid->GetGridWindow()->Bind(wxEVT_PAINT, [&](wxPaintEvent& event) {
        painted.Union(grid->GetGridWindow()->GetUpdateRegion());
        event.Skip();
    });
    const auto cell = [&](int row, int column) {
        return wxRect(grid->CellToRect(row, column)).Deflate(2);
    };

    Answer(0, 5);
    WaitThreeTicks();
    EXPECT_TRUE(painted.IsEmpty());

    Answer(1, 7);
    ASSERT_TRUE(WaitFor("painted", [&] { return painted.Contains(cell(1, 1)) == wxInRegion; }));
    EXPECT_EQ(painted.Contains(cell(0, 1)), wxOutRegion);
    EXPECT_EQ(painted.Contains(cell(1, 0)), wxOutRegion);
    EXPECT_EQ(painted.Contains(cell(1, 2)), wxOutRegion);
}

TEST_F(VarPanelAnswers, FitsAColumnThatTheOperatorHasDrawnWiderToTheNextAnswer)
{
    Load({"MB1/D"});
    Answer(0, 5);
    const int before = grid->GetColSize(1);
    grid->SetColSize(1, before + 50);

    Answer(0, 5);

    EXPECT_EQ(grid->GetColSize(1), before);
}

// ---- Reset and release

TEST_F(VarPanelRelease, ReleasesEverythingAtAResetAndKeepsCountingIds)
{
    Load({"MB1/D", "MB2/D"});
    ExpectAddress("T9", "3");
    ClickAndWait(*define, [this] { return grid->GetNumberRows() == 3; });
    host.requests.clear();

    panel->Reset();

    EXPECT_THAT(host.TakeInWords(), ElementsAre("release 0", "release 1", "release 2"));
    EXPECT_EQ(grid->GetNumberRows(), 0);
    EXPECT_FALSE(panel->IsModified());

    ExpectAddress("T9", "1.1");
    ClickAndWait(*define, [this] { return grid->GetNumberRows() == 1; });
    EXPECT_THAT(host.InWords(), ElementsAre("read 3 A1.1", "start 3"));
}

TEST_F(VarPanelRelease, ResetsAnEmptyListInSilence)
{
    panel->Reset();

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_EQ(grid->GetNumberRows(), 0);
}

TEST_F(VarPanelRelease, ReleasesEverythingAndKeepsTheListWhenItFinishes)
{
    Load({"MB1/D", "MB2/D"});

    panel->FinishVarRequest();

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1"));
    EXPECT_EQ(grid->GetNumberRows(), 2);
}

TEST_F(VarPanelRelease, ThrowsATypedValueAwayAtAReset)
{
    Load({"MB1/D"});
    OpenEditor(0);
    Type("77");
    ASSERT_TRUE(WaitFor("typed", [this] { return EditorText() == "77"; }));

    panel->Reset();
    RunPending();

    EXPECT_THAT(host.InWords(), ElementsAre("release 0"));
}

TEST_F(VarPanelRelease, SendsNothingAfterItWasDisconnected)
{
    Load({"MB1/D"});

    panel->Disconnect();
    panel->FinishVarRequest();
    panel->Reset();

    EXPECT_THAT(host.InWords(), IsEmpty());
}

// ---- Threads and missing callbacks

TEST_F(VarPanelRelease, CallsTheHostOnTheGuiThreadOnly)
{
    Load({"MB1/D"});
    panel->FinishVarRequest();

    ASSERT_FALSE(host.requests.empty());
    for (const RecordedRequest& request : host.requests) {
        EXPECT_EQ(request.thread, std::this_thread::get_id());
    }
}

TEST(VarPanelOfAHostWithoutCallbacks, WorksAndSendsNothing)
{
    const NumberedTexts texts;
    const TempDir dir;
    wxFrame frame(nullptr, wxID_ANY, "watch page");
    frame.CreateStatusBar(1);
    auto* panel = new PlcVarPanel(&frame, PLC_DBG_INIT{}, &frame);

    EXPECT_TRUE(panel->LoadFile(dir.Write("a.plc", "MB1/D\n")));
    panel->SendWriteVarRequest(PlcDebugVar());
    panel->Reset();

    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelAnswers, KnowsItsVariablesByAllOfTheirIdsBits)
{
    const std::vector<std::string> list(20, "MB1/D");
    for (int load = 0; load < 14; ++load) { // the ids go on from 0 to 279
        Load(list);
    }

    Answer(260, 7);
    Answer(4, 9); // of a variable that has gone

    EXPECT_EQ(Cell(0, 1), "7");
    EXPECT_EQ(Cell(4, 1), "?");
}
