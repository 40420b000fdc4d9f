#include "settingsdialog.h"
#include "waitfor.h"

#include <vector>

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

TEST_F(SettingsDialog, ShowsARefusalWhoseTextHasWrongPlaceholdersSafely)
{
    texts.Change({{88, "100% sure %d"}});
    dialogs.Message("T97", "100% sure %d 64");

    EXPECT_FALSE(Record(eAreaInput, eSizeByte, eFormatDecimal).CheckVarAddress("64", true));

    EXPECT_TRUE(dialogs.AllShown());
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
