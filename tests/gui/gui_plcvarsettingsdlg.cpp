#include "settingsdialog.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <wx/stattext.h>

#include <set>
#include <vector>

namespace {

using testing::ElementsAre;

std::vector<bool> EnabledItems(const wxRadioBox& box)
{
    std::vector<bool> enabled;
    for (unsigned item = 0; item < box.GetCount(); ++item) {
        enabled.push_back(box.IsThisEnabled() && box.IsItemEnabled(item));
    }
    return enabled;
}

const auto allItems = ElementsAre(true, true, true, true);
const auto allButFloat = ElementsAre(true, true, true, false);
const auto noItem = ElementsAre(false, false, false, false);

} // namespace

// ---- What it shows

TEST_F(SettingsDialog, OpensWithTheRecordsSettings)
{
    var = Record(eAreaFlag, eSizeWord, eFormatHexadecimal, "20");

    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.area.GetSelection(), eAreaFlag);
        EXPECT_EQ(controls.format.GetSelection(), eFormatHexadecimal);
        EXPECT_EQ(controls.size.GetSelection(), eSizeWord);
        EXPECT_EQ(controls.address.GetValue(), "20");
    });
}

TEST_F(SettingsDialog, HasAnAddressFieldAsHighAsItsFontNeeds)
{
    LookAt([](const Controls& controls) {
        int height = 0;
        gtk_widget_get_preferred_height(controls.address.GetHandle(), nullptr, &height);
        EXPECT_GE(controls.address.GetSize().y, height);
    });
}

TEST_F(SettingsDialog, OpensWithTheKeyboardInTheAddressField)
{
    var = Record(eAreaFlag, eSizeWord, eFormatHexadecimal, "20");

    LookAt([](const Controls& controls) {
        EXPECT_TRUE(WaitFor("keyboard", [&] { return controls.address.HasFocus(); }));
        EXPECT_EQ(controls.address.GetStringSelection(), "20");
    });
}

TEST_F(SettingsDialog, OffersAreasFormatsAndSizesInTheOrderOfTheRecordsValues)
{
    LookAt([](const Controls& controls) {
        EXPECT_THAT(
            controls.area.GetStrings(), ElementsAre("T11", "T12", "T13", "T14", "T15", "T16"));
        EXPECT_EQ(controls.format.GetLabel(), "T29");
        EXPECT_EQ(controls.size.GetLabel(), "T34");
        for (unsigned item = 0; item < 4; ++item) {
            EXPECT_EQ(controls.format.GetString(item), wxString::Format("T%u", 30 + item));
            EXPECT_EQ(controls.size.GetString(item), wxString::Format("T%u", 35 + item));
        }
        EXPECT_EQ(controls.format.GetColumnCount(), 1U);
        EXPECT_EQ(controls.size.GetColumnCount(), 1U);
    });
}

TEST_F(SettingsDialog, OffersEveryDataBlockWithItsDescription)
{
    LookAt([](const Controls& controls) {
        ASSERT_EQ(controls.block.GetCount(), 35U);
        EXPECT_EQ(controls.block.GetString(0), "DB 1 - T18");
        EXPECT_EQ(controls.block.GetString(1), "DB 20 - T19");
        EXPECT_EQ(controls.block.GetString(10), "DB 50 - T107 0");
        EXPECT_EQ(controls.block.GetString(16), "DB 63 - T108 3");
        EXPECT_EQ(controls.block.GetString(17), "DB 64 - T109 0");
        EXPECT_EQ(controls.block.GetString(32), "DB 79 - T109 15");
        EXPECT_EQ(controls.block.GetString(33), "DB 95 - T105");
        EXPECT_EQ(controls.block.GetString(34), "DB 100 - T28");
    });
}

TEST_F(SettingsDialog, OffersADataBlockWhoseDescriptionIsMissing)
{
    texts.Change({{109, "100% sure %n"}}, {18});

    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.block.GetString(0), "DB 1 - ");
        EXPECT_EQ(controls.block.GetString(17), "DB 64 - 100% sure %n 0");
    });
}

TEST_F(SettingsDialog, HasLabelsButtonsAndTips)
{
    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.ok.GetLabel(), "T40");
        EXPECT_EQ(controls.ok.GetToolTipText(), "T83");
        EXPECT_EQ(controls.cancel.GetLabel(), "T41");
        EXPECT_EQ(controls.cancel.GetToolTipText(), "T84");
        std::set<wxString> labels;
        for (wxWindow* child : controls.ok.GetParent()->GetChildren()) {
            if (auto* label = dynamic_cast<wxStaticText*>(child)) {
                labels.insert(label->GetLabel());
            }
        }
        EXPECT_THAT(labels, ElementsAre("T10", "T17", "T39"));
    });
}

TEST_F(SettingsDialog, StandsInThreeColumns)
{
    LookAt([](const Controls& controls) {
        EXPECT_LT(controls.area.GetRect().GetRight(), controls.size.GetRect().GetLeft());
        EXPECT_LT(controls.size.GetRect().GetRight(), controls.address.GetRect().GetLeft());
        EXPECT_LT(controls.area.GetRect().GetBottom(), controls.block.GetRect().GetTop());
        EXPECT_LT(controls.block.GetRect().GetBottom(), controls.format.GetRect().GetTop());
        EXPECT_LT(controls.address.GetRect().GetBottom(), controls.ok.GetRect().GetTop());
        EXPECT_LT(controls.ok.GetRect().GetBottom(), controls.cancel.GetRect().GetTop());
    });
}

TEST_F(SettingsDialog, OfANewRecordIsABitInBinary)
{
    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.area.GetSelection(), eAreaOutput);
        EXPECT_EQ(controls.size.GetSelection(), eSizeBit);
        EXPECT_EQ(controls.format.GetSelection(), eFormatBinary);
        EXPECT_THAT(EnabledItems(controls.format), noItem);
        EXPECT_THAT(EnabledItems(controls.size), allItems);
        EXPECT_EQ(controls.address.GetValue(), "");
    });
}

// ---- The data block box

TEST_F(SettingsDialog, SelectsTheRecordsBlock)
{
    var = Record(eAreaDb, eSizeWord, eFormatDecimal, "4", 64);

    LookAt([](const Controls& controls) {
        EXPECT_TRUE(controls.block.IsEnabled());
        EXPECT_EQ(controls.block.GetSelection(), 17);
    });
}

TEST_F(SettingsDialog, SelectsTheFirstBlockForAnUnknownOne)
{
    var = Record(eAreaDb, eSizeWord, eFormatDecimal, "4", 5);

    LookAt([](const Controls& controls) { EXPECT_EQ(controls.block.GetSelection(), 0); });
}

TEST_F(SettingsDialog, SelectsTheFirstBlockInEveryAreaAndEnablesTheBoxForDataBlocksOnly)
{
    var = Record(eAreaFlag, eSizeWord, eFormatDecimal, "4");

    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.block.GetSelection(), 0);
        EXPECT_FALSE(controls.block.IsEnabled());

        Choose(controls.area, eAreaDb);
        EXPECT_TRUE(controls.block.IsEnabled());

        Choose(controls.area, eAreaTimer);
        EXPECT_FALSE(controls.block.IsEnabled());
    });
}

// ---- How area, size and format follow each other

TEST_F(SettingsDialog, ATimerIsADecimalWordAndGivesBothBoxesFreeAgainAsTheyStand)
{
    var = Record(eAreaDb, eSizeByte, eFormatHexadecimal, "4", 1);

    LookAt([](const Controls& controls) {
        for (const int area : {eAreaTimer, eAreaCounter}) {
            Choose(controls.area, area);
            EXPECT_EQ(controls.size.GetSelection(), eSizeWord);
            EXPECT_EQ(controls.format.GetSelection(), eFormatDecimal);
            EXPECT_THAT(EnabledItems(controls.size), noItem);
            EXPECT_THAT(EnabledItems(controls.format), noItem);
        }
        Choose(controls.area, eAreaFlag);
        EXPECT_EQ(controls.size.GetSelection(), eSizeWord);
        EXPECT_EQ(controls.format.GetSelection(), eFormatDecimal);
        EXPECT_THAT(EnabledItems(controls.size), allItems);
        EXPECT_THAT(EnabledItems(controls.format), allButFloat);
    });
}

TEST_F(SettingsDialog, ABitIsBinary)
{
    var = Record(eAreaFlag, eSizeWord, eFormatDecimal, "4");

    LookAt([](const Controls& controls) {
        Choose(controls.size, eSizeBit);

        EXPECT_EQ(controls.format.GetSelection(), eFormatBinary);
        EXPECT_THAT(EnabledItems(controls.format), noItem);
        EXPECT_THAT(EnabledItems(controls.size), allItems);
    });
}

TEST_F(SettingsDialog, AByteOrWordIsNotFloatingPoint)
{
    LookAt([](const Controls& controls) {
        for (const int size : {eSizeByte, eSizeWord}) {
            Choose(controls.size, size);
            EXPECT_THAT(EnabledItems(controls.format), allButFloat) << size;
            EXPECT_EQ(controls.format.GetSelection(), eFormatBinary) << size;
        }
        Choose(controls.size, eSizeDouble);
        EXPECT_THAT(EnabledItems(controls.format), allItems);
    });
}

TEST_F(SettingsDialog, FloatingPointHoldsTheDoubleWord)
{
    var = Record(eAreaFlag, eSizeDouble, eFormatDecimal, "4");

    LookAt([](const Controls& controls) {
        Choose(controls.format, eFormatFloat);
        EXPECT_EQ(controls.size.GetSelection(), eSizeDouble);
        EXPECT_THAT(EnabledItems(controls.size), noItem);

        Choose(controls.format, eFormatHexadecimal);
        EXPECT_EQ(controls.size.GetSelection(), eSizeDouble);
        EXPECT_THAT(EnabledItems(controls.size), allItems);
    });
}

TEST_F(SettingsDialog, FloatingPointSurvivesAChangeOfArea)
{
    var = Record(eAreaFlag, eSizeDouble, eFormatFloat, "4");

    LookAt([](const Controls& controls) {
        Choose(controls.area, eAreaDb);

        EXPECT_EQ(controls.format.GetSelection(), eFormatFloat);
        EXPECT_THAT(EnabledItems(controls.format), allItems);
        EXPECT_THAT(EnabledItems(controls.size), noItem);
    });
}

TEST_F(SettingsDialog, KeepsFloatingPointShutForAByteWhenTheAreaChanges)
{
    var = Record(eAreaFlag, eSizeByte, eFormatDecimal, "4");

    LookAt([](const Controls& controls) {
        Choose(controls.area, eAreaInput);

        EXPECT_THAT(EnabledItems(controls.format), allButFloat);
    });
}

TEST_F(SettingsDialog, ShowsAByteInFloatingPointAsDoubleWordAndStoresItAtOkOnly)
{
    var = Record(eAreaFlag, eSizeByte, eFormatFloat, "10");

    LookAt([](const Controls& controls) {
        EXPECT_EQ(controls.size.GetSelection(), eSizeDouble);
        EXPECT_EQ(controls.format.GetSelection(), eFormatFloat);
    });
    EXPECT_EQ(var.size, eSizeByte);

    EXPECT_EQ(Show([](const Controls& controls) { Click(controls.ok); }), wxID_OK);
    EXPECT_EQ(var.size, eSizeDouble);
    EXPECT_EQ(var.format, eFormatFloat);
}

TEST_F(SettingsDialog, ShowsABitInHexadecimalAsBinaryAndStoresItAtOkOnly)
{
    var = Record(eAreaFlag, eSizeBit, eFormatHexadecimal, "10.3");

    LookAt(
        [](const Controls& controls) { EXPECT_EQ(controls.format.GetSelection(), eFormatBinary); });
    EXPECT_EQ(var.format, eFormatHexadecimal);

    EXPECT_EQ(Show([](const Controls& controls) { Click(controls.ok); }), wxID_OK);
    EXPECT_EQ(var.format, eFormatBinary);
}
