#include "gui_plcprgpage.h"
#include "plcprgpanel_selector.h"
#include "useractions.h"
#include "waitfor.h"
#include "widgets.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

// The operator's hands at the block selector.

namespace {

/// The program page on five blocks of 3 lines, with a program debug file written anew since.
class SelectorOfBlocks : public PlcPrgPage
{
protected:
    void SetUp() override
    {
        OpenOnPage(Program("old "));
        WriteFile(Program("new "));
        m_panel->Bind(wxEVT_COMBOBOX, [this](wxCommandEvent& event) {
            m_chosen.push_back(m_combo->GetStringSelection().ToStdString());
            event.Skip();
        });
    }

    static std::vector<DebugFileBlock> Program(const std::string& prefix)
    {
        std::vector<DebugFileBlock> blocks;
        std::uint16_t step = 0;
        for (const char* name : {"OB1", "FB1", "FB5", "FB57", "PB1"}) {
            blocks.push_back(
                {name, step, {prefix + name + "a", prefix + name + "b", prefix + name + "c"}});
            step = static_cast<std::uint16_t>(step + 3);
        }
        return blocks;
    }

    std::string FirstLine() const { return m_grid->GetCellValue(0, PrgColumnText).ToStdString(); }

    void OpenList()
    {
        Click(*m_combo);
        ASSERT_TRUE(WaitFor("list", [&] { return IsListOpen(*m_combo); }));
        ASSERT_TRUE(WaitFor("list on the screen", [&] {
            return gtk_widget_get_mapped(ListItemOf(*m_combo, 0)) != FALSE;
        }));
    }

    void WaitForClosedList()
    {
        ASSERT_TRUE(WaitFor("closed list", [&] { return !IsListOpen(*m_combo); }));
        RunPending();
    }

    void WaitForBlock(const std::string& firstLine)
    {
        ASSERT_TRUE(WaitFor("block", [&] { return FirstLine() == firstLine; }));
        WaitThreeTicks(); // nothing else comes
    }

    Words m_chosen; ///< A block for each load.
};

} // namespace

TEST_F(SelectorOfBlocks, LoadsTheBlockOnShowAnewWhenItIsChosen)
{
    OpenList();
    ClickListItem(*m_combo, 0);

    WaitForBlock("new OB1a");
    EXPECT_THAT(m_chosen, ElementsAre("OB1"));
    EXPECT_THAT(TakeRequests(), IsEmpty());
}

TEST_F(SelectorOfBlocks, LoadsTheBlockOnShowAnewByReturnInItsList)
{
    OpenList();
    ClickListItem(*m_combo, 3);
    WaitForBlock("new FB57a");

    OpenList();
    PressKey(WXK_RETURN);
    WaitForClosedList();

    EXPECT_THAT(m_chosen, ElementsAre("FB57", "FB57"));
}

TEST_F(SelectorOfBlocks, LoadsAnotherBlockOnceWhenItIsChosen)
{
    OpenList();
    ClickListItem(*m_combo, 2);

    WaitForBlock("new FB5a");
    EXPECT_THAT(m_chosen, ElementsAre("FB5"));
    EXPECT_THAT(TakeRequests(), ElementsAre("state 6..8 count 3"));
}

TEST_F(SelectorOfBlocks, LoadsNothingByEscapeInItsList)
{
    OpenList();
    PressKey(WXK_ESCAPE);
    WaitForClosedList();

    EXPECT_THAT(m_chosen, IsEmpty());
    EXPECT_EQ(FirstLine(), "old OB1a");
}

TEST_F(SelectorOfBlocks, LoadsNothingByAClickBesideItsList)
{
    OpenList();
    ClickAt(*m_grid, {m_grid->GetClientSize().x - 5, m_grid->GetClientSize().y - 5});
    WaitForClosedList();

    EXPECT_THAT(m_chosen, IsEmpty());
    EXPECT_EQ(FirstLine(), "old OB1a");
}

TEST_F(SelectorOfBlocks, LoadsATypedBlockOnceWhenReturnComes)
{
    ASSERT_TRUE(Focus(*m_combo));

    Type("fb57");
    ASSERT_TRUE(WaitFor("selected", [&] { return m_combo->GetStringSelection() == "FB57"; }));
    EXPECT_THAT(m_chosen, IsEmpty());
    PressKey(WXK_RETURN);
    PressKey(WXK_DOWN); // what is typed and not yet loaded gives way to it

    WaitForBlock("new PB1a");
    EXPECT_THAT(m_chosen, ElementsAre("FB57", "PB1"));
    EXPECT_THAT(TakeRequests(), ElementsAre("state 9..11 count 3", "state 12..14 count 3"));
}

TEST_F(SelectorOfBlocks, LoadsATypedBlockOnceWhenTheTypingPauses)
{
    ASSERT_TRUE(Focus(*m_combo));

    Type("fb5");

    WaitForBlock("new FB5a");
    EXPECT_THAT(m_chosen, ElementsAre("FB5"));
}

TEST_F(SelectorOfBlocks, TakesWhatIsTypedIntoItsList)
{
    OpenList();

    Type("fb57");
    WaitForClosedList();
    ASSERT_TRUE(WaitFor("selected", [&] { return m_combo->GetStringSelection() == "FB57"; }));
    PressKey(WXK_RETURN);

    WaitForBlock("new FB57a");
    EXPECT_THAT(m_chosen, ElementsAre("FB57"));
}

TEST_F(SelectorOfBlocks, GoesOnToTheNextBlockByTheSameLetter)
{
    ASSERT_TRUE(Focus(*m_combo));

    PressKey('F');
    ASSERT_TRUE(WaitFor("first", [&] { return m_combo->GetStringSelection() == "FB1"; }));
    PressKey('F');
    ASSERT_TRUE(WaitFor("second", [&] { return m_combo->GetStringSelection() == "FB5"; }));
}

TEST_F(SelectorOfBlocks, StaysAsItIsByABeginningThatNoBlockHas)
{
    ASSERT_TRUE(Focus(*m_combo));

    Type("x");
    PressKey(WXK_RETURN);
    PressKey(WXK_DOWN);

    WaitForBlock("new FB1a");
    EXPECT_THAT(m_chosen, ElementsAre("FB1"));
}

TEST_F(SelectorOfBlocks, LoadsATypedBlockNotAgainAfterAnotherChoice)
{
    ASSERT_TRUE(Focus(*m_combo));

    Type("fb5");
    ASSERT_TRUE(WaitFor("selected", [&] { return m_combo->GetStringSelection() == "FB5"; }));
    PressKey(WXK_DOWN);
    WaitForBlock("new FB57a");
    PressKey(WXK_RETURN);
    RunPending();

    EXPECT_THAT(m_chosen, ElementsAre("FB57"));
}
