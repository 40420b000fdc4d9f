#include "debugframe.h"
#include "numberedtexts.h"
#include "recordinghost.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

// The frame's menu and its accelerators.

namespace {

using testing::ElementsAre;

} // namespace

TEST_F(DebugFrame, HasTheMenusOfItsTexts)
{
    Configure();
    Open();

    const wxMenuBar& bar = *frame->GetMenuBar();
    ASSERT_EQ(bar.GetMenuCount(), 2U);
    EXPECT_EQ(bar.GetMenuLabel(0), "T68");
    EXPECT_EQ(bar.GetMenuLabel(1), "T69");
    std::vector<std::string> items;
    for (std::size_t menu = 0; menu < 2; ++menu) {
        for (const wxMenuItem* item : bar.GetMenu(menu)->GetMenuItems()) {
            items.push_back(
                std::to_string(item->GetId()) + " " + item->GetItemLabel().ToStdString() + " " +
                item->GetHelp().ToStdString());
        }
    }
    EXPECT_THAT(
        items,
        ElementsAre(
            "5002 T50 T52",
            "5000 T53 T55",
            "5001 T56 T58",
            "5003 T59 T61",
            "5004 T62 T64",
            "5006 T102 T104",
            "5009 T67 T67"));
}

TEST_F(DebugFrame, GivesEveryItemTheLetterOfItsOwnText)
{
    WriteNumberedTexts(
        dir.Path(), {{51, "N"}, {54, "O"}, {57, "W"}, {60, "S"}, {63, "A"}, {103, "Q"}, {66, "I"}});
    Configure();
    Open();

    const auto label = [this](int item) {
        return frame->GetMenuBar()->FindItem(item)->GetItemLabel();
    };
    EXPECT_EQ(label(wxID_NEW), "T50\tCtrl-N");
    EXPECT_EQ(label(wxID_OPEN), "T53\tCtrl-O");
    EXPECT_EQ(label(wxID_CLOSE), "T56\tCtrl-W");
    EXPECT_EQ(label(wxID_SAVE), "T59\tCtrl-S");
    EXPECT_EQ(label(wxID_SAVEAS), "T62\tCtrl-A");
    EXPECT_EQ(label(wxID_EXIT), "T102\tCtrl-Q");
    EXPECT_EQ(label(wxID_HELP), "T67\tCtrl-I");
}

TEST_F(DebugFrame, GivesAcceleratorsToItemsWithALetter)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}, {54, "..."}, {57, ""}, {60, "s"}, {66, "I"}}, {63});
    Configure();
    Open();

    const auto key = [this](int item) {
        const std::unique_ptr<wxAcceleratorEntry> entry(
            frame->GetMenuBar()->FindItem(item)->GetAccel());
        return entry ? entry->GetKeyCode() : 0;
    };
    EXPECT_EQ(key(wxID_NEW), 'N');
    EXPECT_EQ(key(wxID_OPEN), 0);
    EXPECT_EQ(key(wxID_CLOSE), 0);
    EXPECT_EQ(key(wxID_SAVE), 'S');
    EXPECT_EQ(key(wxID_SAVEAS), 0);
    EXPECT_EQ(key(wxID_HELP), 'I');
}

TEST_F(DebugFrame, ObeysNoAcceleratorOfTheToolkitsOwn)
{
    OpenOn(threeVars);

    for (const char letter : {'N', 'O', 'W', 'S', 'Q'}) {
        PressKey(letter, wxMOD_CONTROL);
    }
    WaitThreeTicks();

    EXPECT_EQ(grid->GetNumberRows(), 3);
    EXPECT_TRUE(frame->IsShown());
}

TEST_F(DebugFrame, ShowsNoAcceleratorOfAnItemThatHasNone)
{
    Configure();
    Open();

    for (const int id : {wxID_NEW, wxID_OPEN, wxID_CLOSE, wxID_SAVE, wxID_SAVEAS, wxID_EXIT}) {
        GtkWidget* item = frame->GetMenuBar()->FindItem(id)->GetMenuItem();
        auto* label = GTK_ACCEL_LABEL(gtk_bin_get_child(GTK_BIN(item)));
        EXPECT_EQ(gtk_accel_label_get_accel_width(label), 0U) << id;
    }
}

TEST_F(DebugFrame, ObeysItsAccelerators)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}});
    OpenOn(threeVars);

    PressKey('N', wxMOD_CONTROL);

    EXPECT_TRUE(WaitFor("empty list", [this] { return grid->GetNumberRows() == 0; }));
}

TEST_F(DebugFrame, ThrowsATypedValueAwayWhenANewListIsBegunByItsAccelerator)
{
    WriteNumberedTexts(dir.Path(), {{51, "N"}});
    OpenOn(threeVars);
    TypeValue(1, "77");

    PressKey('N', wxMOD_CONTROL);

    ASSERT_TRUE(WaitFor("empty list", [this] { return grid->GetNumberRows() == 0; }));
    RunPending();
    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 1", "release 2"));
}

TEST_F(DebugFrame, OpensWithEmptyTextsAndTakesNoneOfTheToolkitsOwn)
{
    std::set<int> all;
    for (int entry = 1; entry <= 109; ++entry) {
        all.insert(entry);
    }
    WriteNumberedTexts(dir.Path(), {}, all);
    dir.Write("numbered.lng", "[48]\n200=x\n");
    Configure();
    Open();

    EXPECT_EQ(frame->GetTitle(), "");
    ASSERT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
    for (const int id : {wxID_NEW, wxID_OPEN, wxID_CLOSE, wxID_SAVE, wxID_SAVEAS, wxID_EXIT}) {
        const wxMenuItem* item = frame->GetMenuBar()->FindItem(id);
        EXPECT_EQ(item->GetItemLabelText(), " ");
        EXPECT_EQ(item->GetHelp(), "");
        const std::unique_ptr<wxAcceleratorEntry> accelerator(item->GetAccel());
        EXPECT_EQ(accelerator, nullptr);
    }
}

TEST_F(DebugFrame, ShowsTheInfoDialog)
{
    Configure();
    Open();
    dialogs.Dialog("T67", [](wxDialog& dialog) { Click(*dialog.FindWindow(wxID_OK)); });

    Choose(wxID_HELP);

    EXPECT_TRUE(dialogs.AllShown());
}
