#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcmodal.h"
#include "plcvarsettingsdlg.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <wx/stattext.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

/// The dialog's controls, by their fixed ids.
struct Controls
{
    explicit Controls(wxDialog& dialog)
        : area(*dynamic_cast<wxComboBox*>(dialog.FindWindow(10005))),
          block(*dynamic_cast<wxComboBox*>(dialog.FindWindow(10006))),
          format(*dynamic_cast<wxRadioBox*>(dialog.FindWindow(10007))),
          size(*dynamic_cast<wxRadioBox*>(dialog.FindWindow(10008))),
          address(*dynamic_cast<wxTextCtrl*>(dialog.FindWindow(10009))),
          ok(*dialog.FindWindow(wxID_OK)), cancel(*dialog.FindWindow(wxID_CANCEL))
    {
    }

    wxComboBox& area;
    wxComboBox& block;
    wxRadioBox& format;
    wxRadioBox& size;
    wxTextCtrl& address;
    wxWindow& ok;
    wxWindow& cancel;
};

PlcDebugVar Record(
    eVarArea area,
    eVarSize size,
    eVarFormat format,
    const wxString& address = "",
    std::int32_t dbNumber = -1)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.format = format;
    var.address = address;
    var.dbNumber = dbNumber;
    return var;
}

/// Chooses an item as the operator does, with the arrow keys.
void Choose(wxComboBox& box, int item)
{
    ASSERT_TRUE(Focus(box));
    while (box.GetSelection() != item) {
        const int before = box.GetSelection();
        PressKey(before < item ? WXK_DOWN : WXK_UP);
        ASSERT_TRUE(WaitFor("combo box moved", [&] { return box.GetSelection() != before; }));
    }
    RunPending();
}

void Choose(wxRadioBox& box, int item)
{
    ClickRadioItem(box, item);
    ASSERT_TRUE(WaitFor("radio item chosen", [&] { return box.GetSelection() == item; }));
    RunPending();
}

void TypeAddress(const Controls& controls, const char* text)
{
    controls.address.Clear();
    ASSERT_TRUE(Focus(controls.address));
    Type(text);
    ASSERT_TRUE(WaitFor("address typed", [&] { return controls.address.GetValue() == text; }));
}

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

class SettingsDialog : public testing::Test
{
protected:
    /// Opens the dialog, lets the operator act, and waits for its end.
    int Show(const std::function<void(const Controls&)>& operate)
    {
        dialogs.Dialog("a title", [operate](wxDialog& dialog) { operate(Controls(dialog)); });
        ExpectMessages();
        PlcVarSettingDlg dialog(nullptr, var, "a title");
        return RunModal(dialog);
    }

    /// Looks at the dialog as it opens, and cancels it.
    void LookAt(const std::function<void(const Controls&)>& look)
    {
        const int result = Show([look](const Controls& controls) {
            look(controls);
            Click(controls.cancel);
        });
        EXPECT_EQ(result, wxID_CANCEL);
    }

    void ExpectMessages()
    {
        for (const char* words : messages) {
            dialogs.Message("T97", words);
        }
    }

    NumberedTexts texts;
    ExpectedDialogs dialogs;
    PlcDebugVar var;
    std::vector<const char*> messages; ///< That checking the address is to show, in order.
};

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

// ---- OK, Enter, Cancel

TEST_F(SettingsDialog, StoresWhatTheOperatorHasChosen)
{
    var.value = 5;
    var.requestId = 9;

    const int result = Show([](const Controls& controls) {
        Choose(controls.area, eAreaDb);
        Choose(controls.block, 4);
        Choose(controls.size, eSizeWord);
        Choose(controls.format, eFormatHexadecimal);
        TypeAddress(controls, "12");
        Click(controls.ok);
    });

    EXPECT_EQ(result, wxID_OK);
    EXPECT_EQ(var.GetVarName(false), "DB4.DBW12");
    EXPECT_EQ(var.format, eFormatHexadecimal);
    EXPECT_EQ(var.value, 5);
    EXPECT_EQ(var.requestId, 9);
}

TEST_F(SettingsDialog, StoresNoBlockOutsideDataBlocks)
{
    var = Record(eAreaDb, eSizeWord, eFormatDecimal, "4", 64);

    const int result = Show([](const Controls& controls) {
        Choose(controls.area, eAreaFlag);
        Click(controls.ok);
    });

    EXPECT_EQ(result, wxID_OK);
    EXPECT_EQ(var.dbNumber, -1);
    EXPECT_EQ(var.GetVarName(false), "MW4");
}

TEST_F(SettingsDialog, StaysOpenForAnInvalidAddressAndKeepsWhatWasChosenBesides)
{
    var = Record(eAreaFlag, eSizeByte, eFormatDecimal, "20");
    messages = {"T88 1021"};

    const int result = Show([this](const Controls& controls) {
        Choose(controls.area, eAreaDb);
        Choose(controls.block, 5);
        Choose(controls.size, eSizeDouble);
        Choose(controls.format, eFormatFloat);
        TypeAddress(controls, "1022");
        Click(controls.ok);
        ASSERT_TRUE(WaitFor("refusal", [this] { return dialogs.AllShown(); }));
        EXPECT_EQ(controls.address.GetValue(), "1022");
        Click(controls.cancel);
    });

    EXPECT_EQ(result, wxID_CANCEL);
    EXPECT_EQ(var.area, eAreaDb);
    EXPECT_EQ(var.dbNumber, 10);
    EXPECT_EQ(var.size, eSizeDouble);
    EXPECT_EQ(var.format, eFormatFloat);
    EXPECT_EQ(var.address, "20");
}

TEST_F(SettingsDialog, EndsWithOkByEnterInAValidAddress)
{
    var = Record(eAreaFlag, eSizeWord, eFormatDecimal, "20");

    const int result = Show([](const Controls& controls) {
        TypeAddress(controls, "30");
        PressKey(WXK_RETURN);
    });

    EXPECT_EQ(result, wxID_OK);
    EXPECT_EQ(var.address, "30");
}

TEST_F(SettingsDialog, StaysOpenByEnterInAnInvalidAddress)
{
    var = Record(eAreaFlag, eSizeBit, eFormatBinary, "20.1");
    messages = {"T86", "T87"};

    const int result = Show([this](const Controls& controls) {
        TypeAddress(controls, "5");
        PressKey(WXK_RETURN);
        ASSERT_TRUE(WaitFor("first refusal", [this] { return dialogs.Outstanding() == 1; }));
        TypeAddress(controls, "5.8");
        PressKey(WXK_RETURN);
        ASSERT_TRUE(WaitFor("second refusal", [this] { return dialogs.AllShown(); }));
        TypeAddress(controls, "5.7");
        PressKey(WXK_RETURN);
    });

    EXPECT_EQ(result, wxID_OK);
    EXPECT_EQ(var.GetVarName(false), "M5.7");
}

TEST_F(SettingsDialog, NamesTheFaultOfEveryAddress)
{
    struct Fault
    {
        PlcDebugVar var;
        const char* address;
        const char* message;
    };

    const std::vector<Fault> faults = {
        {Record(eAreaInput, eSizeByte, eFormatDecimal), "x", "T101"},
        {Record(eAreaInput, eSizeByte, eFormatDecimal), "-1", "T101"},
        {Record(eAreaInput, eSizeByte, eFormatDecimal), "5.3", "T96"},
        {Record(eAreaInput, eSizeByte, eFormatDecimal), "64", "T88 64"},
        {Record(eAreaTimer, eSizeWord, eFormatDecimal), "127", "T88 127"},
        {Record(eAreaInput, eSizeBit, eFormatBinary), "5", "T86"},
        {Record(eAreaInput, eSizeBit, eFormatBinary), "5.8", "T87"}};

    for (const Fault& fault : faults) {
        dialogs.Message("T97", fault.message);
        EXPECT_FALSE(fault.var.CheckVarAddress(fault.address, true)) << fault.message;
        EXPECT_TRUE(dialogs.AllShown()) << fault.message;
    }
}

TEST_F(SettingsDialog, ShowsNothingForAnAddressThatIsRefusedInSilence)
{
    PlcDebugVar badArea = Record(eAreaFlag, eSizeByte, eFormatDecimal);
    badArea.area = 6;

    EXPECT_FALSE(Record(eAreaDb, eSizeByte, eFormatDecimal, "", 5).CheckVarAddress("1", true));
    EXPECT_FALSE(badArea.CheckVarAddress("1", true));
    EXPECT_FALSE(Record(eAreaInput, eSizeByte, eFormatDecimal).CheckVarAddress("64", false));
}

TEST_F(SettingsDialog, ChangesNothingWhenCancelled)
{
    const PlcDebugVar before = Record(eAreaFlag, eSizeWord, eFormatDecimal, "20");
    for (const bool byKey : {false, true}) {
        var = before;

        const int result = Show([byKey](const Controls& controls) {
            Choose(controls.area, eAreaDb);
            Choose(controls.size, eSizeBit);
            TypeAddress(controls, "30.1");
            if (byKey) {
                PressKey(WXK_ESCAPE);
            } else {
                Click(controls.cancel);
            }
        });

        EXPECT_EQ(result, wxID_CANCEL);
        EXPECT_TRUE(var == before);
    }
}
