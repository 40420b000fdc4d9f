#include "descendants.h"
#include "expecteddialogs.h"
#include "gui_plcprgpage.h"
#include "records.h"

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

// The program page on its file: blocks, listings, and what is wrong with a file.

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

TEST_F(PlcPrgPage, WithoutABlockOfTheChosenNumberThrowsAndStaysAsItIs)
{
    OpenOnPage({Block("OB1", 0, 3), Block("FB7", 3, 2)});

    EXPECT_THROW(m_panel->LoadBS(2), std::out_of_range);
    EXPECT_THROW(m_panel->LoadBS(-1), std::out_of_range);

    EXPECT_EQ(OpenFilesIn(m_dir.Path()), 0);
    ASSERT_EQ(m_grid->GetNumberRows(), 3);
    EXPECT_EQ(m_grid->GetCellValue(2, 2), "OB1 2");
    AnswerSubscribed(5);
    EXPECT_EQ(Shown(2), "1/7");
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
