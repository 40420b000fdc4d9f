#include "descendants.h"
#include "expecteddialogs.h"
#include "gui_plcprgpage.h"
#include "records.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <wx/stattext.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>
#include <stdexcept>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// @return what the page's constructor threw, nothing when it threw nothing.
std::optional<std::string> ThrownByPage(wxWindow& parent, const PLC_DBG_INIT& init)
{
    try {
        const PlcPrgPanel panel(&parent, init);
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return std::nullopt;
}

/// @return how often this process has a file of a folder open.
std::ptrdiff_t OpenFilesIn(const std::filesystem::path& folder)
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::count_if(begin(files), end(files), [&](const auto& file) {
        std::error_code closedMeanwhile;
        return read_symlink(file.path(), closedMeanwhile).parent_path() == folder;
    });
}

DebugFileBlock Block(const std::string& name, std::uint16_t firstStep, int lineCount)
{
    return {name, firstStep, ExecutableLines(lineCount, name)};
}

} // namespace

TEST_F(PlcPrgPage, ShowsTheBlocksAndTheListingOfTheFirst)
{
    OpenOnPage({Block("OB1", 0, 3), {"FB7", 3, {"x"}}});

    EXPECT_EQ(FirstOf<wxStaticText>(*m_panel)->GetLabel(), "T43");
    EXPECT_EQ(m_combo->GetId(), 10004);
    EXPECT_TRUE(m_combo->HasFlag(wxCB_READONLY));
    EXPECT_THAT(m_combo->GetStrings(), ElementsAre("OB1", "FB7"));
    EXPECT_EQ(m_combo->GetSelection(), 0);
    EXPECT_EQ(m_grid->GetColLabelValue(0), "T70");
    EXPECT_EQ(m_grid->GetColLabelValue(1), "T71");
    EXPECT_EQ(m_grid->GetColLabelValue(2), "T72");
    ASSERT_EQ(m_grid->GetNumberRows(), 3);
    ASSERT_EQ(m_grid->GetNumberCols(), 3);
    EXPECT_EQ(m_grid->GetCellValue(2, 2), "OB1 2");
    EXPECT_EQ(Shown(2), "?/-");
}

TEST_F(PlcPrgPage, ShowsANonExecutableLineWithoutStateAndTheWholeTextOfEachLine)
{
    OpenOnPage({{"OB1", 0, {"0000 :NETWORK 1", "0001 :U E 0.0"}}});

    EXPECT_EQ(Shown(0), "-/-");
    EXPECT_EQ(Shown(1), "?/-");
    EXPECT_EQ(m_grid->GetCellValue(0, 2), "0000 :NETWORK 1");
    EXPECT_EQ(m_grid->GetCellValue(1, 2), "0001 :U E 0.0");
}

TEST_F(PlcPrgPage, ShowsABlockNameOfTheWholeFieldOrOneThatDoesNotConvert)
{
    OpenOnPage({{std::string(48, 'n'), 0, {}}, {"F\xF6rderband", 0, {}}});

    EXPECT_THAT(m_combo->GetStrings(), ElementsAre(std::string(48, 'n'), L"F\u00F6rderband"));
}

TEST_F(PlcPrgPage, OfABlockWithoutLinesIsEmptyAndRequestsNothing)
{
    const Words requests = OpenOnPage({{"OB1", 0, {}}, Block("FB7", 0, 3)});

    EXPECT_EQ(m_grid->GetNumberRows(), 0);
    EXPECT_THAT(requests, IsEmpty());

    ChooseBlock(1);
    EXPECT_THAT(TakeRequests(), ElementsAre("state 0..2 count 3"));
    ChooseBlock(0);
    EXPECT_EQ(m_grid->GetNumberRows(), 0);
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, WithoutAFileSaysSoTwiceAndIsEmpty)
{
    ExpectedDialogs dialogs;
    dialogs.Message("T85", "T92 " + m_dir.File("machine_plcdbgi.dat"));
    dialogs.Message("T85", "T92 " + m_dir.File("machine_plcdbgi.dat"));

    Open();

    EXPECT_TRUE(dialogs.AllShown());
    EXPECT_EQ(m_combo->GetCount(), 0U);
    EXPECT_EQ(m_combo->GetSelection(), wxNOT_FOUND);
    EXPECT_EQ(m_grid->GetNumberRows(), 0);
    TurnTo(1);
    Tick();
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, OfAFileWithoutBlocksEndsInAnErrorAndLeavesNothingBehind)
{
    WriteFile({});
    wxFrame frame(nullptr, wxID_ANY, "frame");

    EXPECT_EQ(
        ThrownByPage(frame, m_host.init),
        "vector::_M_range_check: __n (which is 0) >= this->size() (which is 0)");

    EXPECT_THAT(frame.GetChildren(), testing::SizeIs(0));
    EXPECT_EQ(OpenFilesIn(m_dir.Path()), 0);
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, OfAFileTooShortForAnIndexEndsInTheSameError)
{
    wxFrame frame(nullptr, wxID_ANY, "frame");
    for (const std::string bytes : {"", "PLC", "PLCDEBUG\x0C"}) {
        m_dir.Write("machine_plcdbgi.dat", bytes);
        EXPECT_NE(ThrownByPage(frame, m_host.init), std::nullopt) << bytes;
    }
}

TEST_F(PlcPrgPage, WithoutABlockOfTheChosenNumberThrowsAndStaysUsable)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 3, 2)});

    EXPECT_THROW(m_panel->LoadBS(2), std::out_of_range);
    EXPECT_THROW(m_panel->LoadBS(-1), std::out_of_range);

    EXPECT_EQ(OpenFilesIn(m_dir.Path()), 0);
    ASSERT_EQ(m_grid->GetNumberRows(), 3);
    EXPECT_EQ(m_grid->GetCellValue(2, 2), "OB1 2");
    m_grid->DoPrgStateRequest();
    ChooseBlock(1);
    EXPECT_EQ(m_grid->GetNumberRows(), 2);
    EXPECT_EQ(m_grid->GetCellValue(1, 2), "FB7 1");
    EXPECT_THAT(TakeRequests(), ElementsAre("state 3..4 count 2"));
}

TEST_F(PlcPrgPage, KeepsTheFormerBlockWhenTheFileIsGone)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 3, 2)});
    std::filesystem::remove(m_dir.File("machine_plcdbgi.dat"));
    ExpectedDialogs dialogs;
    dialogs.Message("T85", "T92 " + m_dir.File("machine_plcdbgi.dat"));

    ChooseBlock(1);

    EXPECT_EQ(m_combo->GetSelection(), 1);
    ASSERT_EQ(m_grid->GetNumberRows(), 3);
    EXPECT_EQ(m_grid->GetCellValue(2, 2), "OB1 2");
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(PlcPrgPage, ReadsTheLinesOfARewrittenFileAtTheFormerPlaces)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 3, 2)});
    WriteFile({{"NEW", 0, {"new 0", "new 1", "new 2", "FB7 0", "new 4"}}});

    ChooseBlock(1);

    EXPECT_THAT(m_combo->GetStrings(), ElementsAre("OB1", "FB7"));
    EXPECT_EQ(m_grid->GetCellValue(1, 2), "new 4");
}

TEST_F(PlcPrgPage, TakesThePathPrefixAsItStands)
{
    m_dir.Write("_plcdbgi.dat", DebugFile({Block("OB1", 0, 3)}));
    const std::string prefix = m_dir.Path().string() + "/";
    std::strcpy(m_host.init.szPath, prefix.c_str());

    Open();

    EXPECT_EQ(m_grid->GetNumberRows(), 3);
}

TEST_F(PlcPrgPage, OpensAFileWhosePathDoesNotConvert)
{
    m_dir.Write("m\xE4_plcdbgi.dat", DebugFile({Block("OB1", 0, 3)}));
    std::strcpy(m_host.init.szPath, m_dir.File("m\xE4").c_str());

    Open();

    EXPECT_EQ(m_grid->GetNumberRows(), 3);
}

TEST_F(PlcPrgPage, EndsAPathWithoutAZeroWithItsField)
{
    std::memset(m_host.init.szPath, 'x', sizeof m_host.init.szPath);
    ExpectedDialogs dialogs;
    dialogs.Message("T85", "T92 " + std::string(256, 'x') + "_plcdbgi.dat");
    dialogs.Message("T85", "T92 " + std::string(256, 'x') + "_plcdbgi.dat");

    Open();
}

TEST_F(PlcPrgPage, ShowsABlockOf65535Lines)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 40000, 0xFFFF)});
    ChooseBlock(1);
    EXPECT_THAT(TakeRequests(), ElementsAre(VisibleRange(40000)));
    ASSERT_EQ(m_grid->GetNumberRows(), 0xFFFF);

    ScrollToRow(0xFFFF);
    m_grid->SetScrollPending();
    Tick();

    EXPECT_EQ(TakeRequests(), Words{VisibleRange(40000)});
    EXPECT_THAT(VisibleRange(40000), HasSubstr("..105534 "));
    m_panel->AnswerPrgState(PrgStateAnswerRecord(0, 2, {{1, 1}, {1, 1}, {1, 1}}));
    EXPECT_EQ(Shown(0xFFFE), "?/-");
}

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
