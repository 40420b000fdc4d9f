#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>
#include <wx/combobox.h>
#include <wx/radiobox.h>
#include <wx/textctrl.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int idArea = 10005;
constexpr int idFormat = 10007;
constexpr int idSize = 10008;
constexpr int idAddress = 10009;

/// What the settings dialog shows: area, format and size by number, then the address.
std::string ShownIn(wxDialog& dialog)
{
    const auto number = [](int value) { return std::to_string(value) + " "; };
    return number(dynamic_cast<wxComboBox*>(dialog.FindWindow(idArea))->GetSelection()) +
           number(dynamic_cast<wxRadioBox*>(dialog.FindWindow(idFormat))->GetSelection()) +
           number(dynamic_cast<wxRadioBox*>(dialog.FindWindow(idSize))->GetSelection()) +
           dynamic_cast<wxTextCtrl*>(dialog.FindWindow(idAddress))->GetValue().ToStdString();
}

class VarPanel : public WatchPage
{
protected:
    /// Presses a button, notes what the settings dialog opens with, and cancels it.
    std::string OpensWith(wxButton& button, const char* title)
    {
        std::string shown;
        dialogs.Dialog(title, [&shown](wxDialog& dialog) {
            shown = ShownIn(dialog);
            Click(*dialog.FindWindow(wxID_CANCEL));
        });
        ClickAndWait(button, [&shown] { return !shown.empty(); });
        EXPECT_TRUE(WaitFor("dialog gone", [this] { return frame->IsActive(); }));
        return shown;
    }
};

} // namespace

// ---- The page

TEST_F(VarPanel, HasThreeColumnsAndThreeButtonsWithTips)
{
    EXPECT_EQ(grid->GetNumberRows(), 0);
    ASSERT_EQ(grid->GetNumberCols(), 3);
    EXPECT_EQ(grid->GetColLabelValue(0), "T2");
    EXPECT_EQ(grid->GetColLabelValue(1), "T3");
    EXPECT_EQ(grid->GetColLabelValue(2), "T4");
    EXPECT_EQ(grid->GetRowLabelSize(), 0);
    EXPECT_EQ(define->GetLabel(), "T5");
    EXPECT_EQ(modify->GetLabel(), "T6");
    EXPECT_EQ(remove->GetLabel(), "T7");
    EXPECT_EQ(define->GetToolTipText(), "T73");
    EXPECT_EQ(modify->GetToolTipText(), "T74");
    EXPECT_EQ(remove->GetToolTipText(), "T75");
}

TEST_F(VarPanel, HasItsButtonsInAColumnAtTheRightOfTheGrid)
{
    EXPECT_LT(grid->GetRect().GetRight(), define->GetRect().GetLeft());
    EXPECT_LT(define->GetRect().GetBottom(), modify->GetRect().GetTop());
    EXPECT_LT(modify->GetRect().GetBottom(), remove->GetRect().GetTop());
}

TEST_F(VarPanel, StartsWithTheKeyboardInTheGrid)
{
    EXPECT_TRUE(GridHasKeyboard());
}

// ---- Define

TEST_F(VarPanel, DefinesANewVariableFromDefaultSettingsWhenTheListIsEmpty)
{
    EXPECT_EQ(OpensWith(*define, "T9"), "0 2 0 ");
}

TEST_F(VarPanel, DefinesFromTheSelectedVariable)
{
    Load({"MB1/D", "EW4/H", "MB3/D"});
    Select({{1, 1}});

    EXPECT_EQ(OpensWith(*define, "T9"), "1 1 2 4");
}

TEST_F(VarPanel, DefinesFromTheTopOfTheFirstSelectedBlock)
{
    Load({"MB1/D", "EW4/H", "MB3/D", "AD0/B"});
    Select({{1, 2}, {3, 3}});

    EXPECT_EQ(OpensWith(*define, "T9"), "1 1 2 4");
}

TEST_F(VarPanel, DefinesFromTheFirstVariableWhenNothingIsSelected)
{
    Load({"MW20/D", "EW4/H"});
    Select({});

    EXPECT_EQ(OpensWith(*define, "T9"), "2 0 2 20");
}

TEST_F(VarPanel, ChangesNothingWhenDefineIsCancelled)
{
    Load({"MW20/D"});

    OpensWith(*define, "T9");

    EXPECT_EQ(grid->GetNumberRows(), 1);
    EXPECT_FALSE(panel->IsModified());
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarPanel, RegistersADefinedVariableAndShowsAQuestionMark)
{
    ExpectAddress("T9", "3.5");

    ClickAndWait(*define, [this] { return host.requests.size() == 2; });

    EXPECT_THAT(host.InWords(), ElementsAre("read 0 A3.5", "start 0"));
    EXPECT_THAT(Column(0), ElementsAre("A 3.5"));
    EXPECT_THAT(Column(1), ElementsAre("?"));
    EXPECT_THAT(Column(2), ElementsAre("T32"));
    EXPECT_THAT(Selected(), ElementsAre(Pair(0, 0)));
    EXPECT_TRUE(panel->IsModified());
    EXPECT_TRUE(WaitFor("keyboard in the grid", [this] { return GridHasKeyboard(); }));
}

TEST_F(VarPanel, ShowsAQuestionMarkAlthoughTheTemplateHasAValue)
{
    Load({"MW20/D"});
    Answer(0, 42);
    ASSERT_EQ(Cell(0, 1), "42");
    ExpectAddress("T9", "30");

    ClickAndWait(*define, [this] { return host.requests.size() == 2; });

    EXPECT_THAT(Column(0), ElementsAre("MW 20", "MW 30"));
    EXPECT_THAT(Column(1), ElementsAre("42", "?"));
}

TEST_F(VarPanel, RefusesThe21stDefinedVariable)
{
    Load(std::vector<std::string>(19, "MB1/D"));
    ExpectAddress("T9", "20");
    ClickAndWait(*define, [this] { return grid->GetNumberRows() == 20; });
    host.requests.clear();

    ExpectAddress("T9", "21");
    dialogs.Message("T85", "T98 20");
    ClickAndWait(*define, [this] { return dialogs.AllShown(); });

    EXPECT_EQ(grid->GetNumberRows(), 20);
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarPanel, TakesTheSameOperandTwiceAndKeepsThemApart)
{
    Load({"MW20/D", "MW20/D"});

    Answer(1, 7);

    EXPECT_THAT(Column(0), ElementsAre("MW 20", "MW 20"));
    EXPECT_THAT(Column(1), ElementsAre("?", "7"));
}

// ---- Modify

TEST_F(VarPanel, RefusesToModifyTwoRows)
{
    Load({"MB1/D", "MB2/D", "MB3/D"});
    Select({{0, 1}});
    ClickRefused(*modify, "T93");

    Select({{0, 0}, {2, 2}});
    ClickRefused(*modify, "T93");

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanel, RefusesToModifyNothing)
{
    ClickRefused(*modify, "T94");

    Load({"MB1/D"});
    Select({});
    ClickRefused(*modify, "T94");
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanel, ModifiesUnderTheOldIdReleasingTheOldDefinitionFirst)
{
    Load({"MB1/D", "EW4/H", "MB3/D"});
    Answer(1, 0x12);
    Select({{1, 1}});
    ExpectAddress("T91", "6");

    ClickAndWait(*modify, [this] { return host.requests.size() == 3; });

    EXPECT_THAT(host.InWords(), ElementsAre("release 1", "read 1 EW6", "start 1"));
    EXPECT_THAT(Column(0), ElementsAre("MB 1", "EW 6", "MB 3"));
    EXPECT_EQ(Cell(1, 1), "0012");
    EXPECT_TRUE(panel->IsModified());
    EXPECT_TRUE(WaitFor("keyboard in the grid", [this] { return GridHasKeyboard(); }));
    Answer(1, 0x34);
    EXPECT_EQ(Cell(1, 1), "0034");
}

TEST_F(VarPanel, ChangesNothingWhenModifyIsCancelled)
{
    Load({"MB1/D"});
    Select({{0, 0}});

    EXPECT_EQ(OpensWith(*modify, "T91"), "2 0 1 1");

    EXPECT_FALSE(panel->IsModified());
    EXPECT_THAT(host.InWords(), IsEmpty());
}

TEST_F(VarPanel, CountsAnUnchangedOkAsAModification)
{
    Load({"MB1/D"});
    Select({{0, 0}});
    ExpectAddress("T91", "1");

    ClickAndWait(*modify, [this] { return host.requests.size() == 3; });

    EXPECT_TRUE(panel->IsModified());
    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "read 0 MB1", "start 0"));
}

TEST_F(VarPanel, KeepsAnAnswerThatCameWhileTheDialogWasOpen)
{
    Load({"MB1/D"});
    Answer(0, 5);
    Select({{0, 0}});
    ExpectSettings("T91", [this](wxDialog&) { Answer(0, 6); });

    ClickAndWait(*modify, [this] { return host.requests.size() == 3; });

    EXPECT_EQ(Cell(0, 1), "6");
}

TEST_F(VarPanel, EndsModifyWithoutAChangeWhenTheVariableHasGoneMeanwhile)
{
    Load({"MB1/D", "MB2/D"});
    Select({{1, 1}});
    ExpectSettings("T91", [this](wxDialog&) {
        panel->Reset();
        host.requests.clear();
    });

    ClickAndWait(*modify, [this] { return dialogs.AllShown(); });
    ASSERT_TRUE(WaitFor("dialog gone", [this] { return frame->IsActive(); }));

    EXPECT_THAT(host.InWords(), IsEmpty());
    EXPECT_EQ(grid->GetNumberRows(), 0);
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanel, ModifiesTheRightVariableWhenRowsHaveMovedMeanwhile)
{
    Load({"MB1/D", "MB2/D"});
    Select({{1, 1}});
    ExpectSettings("T91", [this](wxDialog&) {
        Select({{0, 0}});
        wxCommandEvent deleteFirst;
        panel->OnButtonDelete(deleteFirst);
        host.requests.clear();
    });

    ClickAndWait(*modify, [this] { return host.requests.size() == 3; });

    EXPECT_THAT(host.InWords(), ElementsAre("release 1", "read 1 MB2", "start 1"));
    EXPECT_THAT(Column(0), ElementsAre("MB 2"));
}

// ---- Status line

TEST_F(VarPanel, ClearsTheStatusLineAtEveryButton)
{
    Load({"MB1/D"});
    Select({});
    for (wxButton* button : {modify, remove}) {
        panel->WriteErrorInStatus("old");
        ClickRefused(*button, button == modify ? "T94" : "T95");
        EXPECT_EQ(Status(), "");
    }
    panel->WriteErrorInStatus("old");
    OpensWith(*define, "T9");
    EXPECT_EQ(Status(), "");
}
