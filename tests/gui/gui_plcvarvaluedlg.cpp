#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcdebugvar.h"
#include "plcmodal.h"
#include "plcvarvaluedlg.h"
#include "useractions.h"

#include <gtest/gtest.h>
#include <wx/stattext.h>

#include <algorithm>

namespace {

constexpr int idField = 10013;

class ValueDialog : public testing::Test
{
protected:
    NumberedTexts texts;
    ExpectedDialogs dialogs;
};

} // namespace

TEST_F(ValueDialog, HasPromptEmptyFieldAndNoCancel)
{
    PlcVarValueDlg dialog(nullptr);

    EXPECT_EQ(dialog.GetTitle(), "T3");
    EXPECT_EQ(dialog.GetVarTCValue(), "");
    EXPECT_EQ(dialog.FindWindow(wxID_OK)->GetLabel(), "T40");
    EXPECT_EQ(dialog.FindWindow(wxID_CANCEL), nullptr);
    const wxWindowList& children = dialog.GetChildren();
    EXPECT_TRUE(std::any_of(children.begin(), children.end(), [](wxWindow* child) {
        return dynamic_cast<wxStaticText*>(child) != nullptr && child->GetLabel() == "T90";
    }));
}

TEST_F(ValueDialog, StandsTopToBottom)
{
    PlcVarValueDlg dialog(nullptr);

    const wxRect field = dialog.FindWindow(idField)->GetRect();
    const wxRect button = dialog.FindWindow(wxID_OK)->GetRect();
    EXPECT_LT(field.GetBottom(), button.GetTop());
}

TEST_F(ValueDialog, EndsWithOkByEnterInItsField)
{
    PlcVarValueDlg dialog(nullptr);
    dialogs.Dialog("T3", [](wxDialog& shown) {
        ASSERT_TRUE(Focus(*shown.FindWindow(idField)));
        Type("-12.5");
        PressKey(WXK_RETURN);
    });

    EXPECT_EQ(RunModal(dialog), wxID_OK);
    EXPECT_EQ(dialog.GetVarTCValue(), "-12.5");
}

TEST_F(ValueDialog, EndsWithOkByItsButton)
{
    PlcVarValueDlg dialog(nullptr);
    dialogs.Dialog("T3", [](wxDialog& shown) {
        ASSERT_TRUE(Focus(*shown.FindWindow(idField)));
        Type("7");
        Click(*shown.FindWindow(wxID_OK));
    });

    EXPECT_EQ(RunModal(dialog), wxID_OK);
    EXPECT_EQ(dialog.GetVarTCValue(), "7");
}

TEST_F(ValueDialog, TakesAnEmptyTextThatCountsAsZero)
{
    PlcVarValueDlg dialog(nullptr);
    dialogs.Dialog("T3", [](wxDialog& shown) {
        ASSERT_TRUE(Focus(*shown.FindWindow(idField)));
        PressKey(WXK_RETURN);
    });

    EXPECT_EQ(RunModal(dialog), wxID_OK);
    PlcDebugVar var;
    var.value = 1;
    wxString error;
    EXPECT_TRUE(var.SetVarValue(dialog.GetVarTCValue(), error));
    EXPECT_EQ(var.value, 0);
}
