#include "descendants.h"
#include "plcprggrid.h"
#include "projectfile.h"
#include "typing.h"

#include <gtk/gtk.h>
#include <wx/combobox.h>
#include <wx/textctrl.h>

// The window with the texts that it is delivered with, without a mouse.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Shipped : public Typing
{
protected:
    void Reopen(const std::string& language)
    {
        Destroy();
        dir.Write(
            "plcdebug.ini",
            "[Settings]\nLanguagePath=" + ProjectFile("languages") + "\nLanguage=" + language +
                "\nPLCLastFile=" + dir.Write("list.plc", "MB1/D\nMB2/D\n") + "\n");
        Open();
        host.requests.clear();
        ASSERT_TRUE(WaitForList());
    }

    testing::AssertionResult WaitForDialogs()
    {
        return WaitFor("dialog over", [this] { return dialogs.AllShown() && frame->IsActive(); });
    }
};

/// @return what a button shows, with an underline before its access key.
std::string TextOn(wxWindow& button)
{
    return gtk_button_get_label(GTK_BUTTON(button.GetHandle()));
}

struct Letters
{
    const char* language;
    char define, modify, remove, block, area, dataBlock, address, ok, cancel;
    const char* defineTitle;
    const char* modifyTitle;
    const char* okText;
    const char* cancelText;
};

const std::vector<Letters> allLetters = {
    {"en",
     'D',
     'M',
     'L',
     'B',
     'A',
     'B',
     'D',
     'O',
     'C',
     "Define variable",
     "Modify variable",
     "_OK",
     "_Cancel"},
    {"de",
     'F',
     'N',
     'L',
     'B',
     'E',
     'B',
     'A',
     'O',
     'R',
     "Variable definieren",
     "Variable ändern",
     "_OK",
     "Abb_rechen"}};

} // namespace

TEST_F(Shipped, OpensItsDialogsByAccessKeysAndShowsItsOwnWordsInThem)
{
    for (const Letters& letters : allLetters) {
        Reopen(letters.language);
        dialogs.Dialog(wxString::FromUTF8(letters.defineTitle), [&](wxDialog& dialog) {
            EXPECT_EQ(TextOn(*dialog.FindWindow(wxID_OK)), letters.okText);
            EXPECT_EQ(TextOn(*dialog.FindWindow(wxID_CANCEL)), letters.cancelText);
            PressKey(letters.cancel, wxMOD_ALT);
        });
        PressKey(letters.define, wxMOD_ALT);
        ASSERT_TRUE(WaitForDialogs());

        dialogs.Dialog(wxString::FromUTF8(letters.modifyTitle), [&](wxDialog&) {
            PressKey(letters.ok, wxMOD_ALT);
        });
        PressKey(letters.modify, wxMOD_ALT);
        ASSERT_TRUE(WaitForDialogs());

        PressKey(letters.remove, wxMOD_ALT);
        EXPECT_TRUE(WaitFor("deleted", [this] { return grid->GetNumberRows() == 1; }));
        WaitThreeTicks();
        EXPECT_THAT(SelectedRows(), IsEmpty());
        panel->SaveFile(dir.File("list.plc")); // nothing is asked at the end
    }
}

TEST_F(Shipped, SendsWhatIsBeingTypedWhenDefineIsChosenByItsAccessKey)
{
    Reopen("en");
    TypeValue(0, "42");
    dialogs.Dialog("Define variable", [](wxDialog&) { PressKey(WXK_ESCAPE); });

    PressKey('D', wxMOD_ALT);

    ASSERT_TRUE(WaitForDialogs());
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=42"));
}

TEST_F(Shipped, ReachesTheFieldsOfItsDialogByAccessKeys)
{
    for (const Letters& letters : allLetters) {
        Reopen(letters.language);
        dialogs.Dialog(wxString::FromUTF8(letters.modifyTitle), [&](wxDialog& dialog) {
            const auto expectKeyboard = [&](int id) {
                wxWindow* control = dialog.FindWindow(id);
                EXPECT_TRUE(WaitFor("keyboard", [=] { return control->HasFocus(); })) << id;
            };
            expectKeyboard(10009);
            EXPECT_EQ(
                dynamic_cast<wxTextCtrl*>(dialog.FindWindow(10009))->GetStringSelection(), "1");
            PressKey(letters.area, wxMOD_ALT);
            expectKeyboard(10005);
            dialog.FindWindow(10006)->Enable();
            PressKey(letters.dataBlock, wxMOD_ALT);
            expectKeyboard(10006);
            PressKey(letters.address, wxMOD_ALT);
            expectKeyboard(10009);
            PressKey(WXK_ESCAPE);
        });
        PressKey(letters.modify, wxMOD_ALT);
        ASSERT_TRUE(WaitForDialogs());
    }
}

TEST_F(Shipped, ReachesTheBlockSelectorByItsAccessKey)
{
    for (const Letters& letters : allLetters) {
        Reopen(letters.language);
        PressKey(WXK_PAGEDOWN, wxMOD_CONTROL);
        auto* list = FirstOf<PlcPrgGrid>(*frame);
        ASSERT_TRUE(WaitFor("list", [=] { return list->GetGridWindow()->HasFocus(); }));

        PressKey(letters.block, wxMOD_ALT);

        auto* selector = FirstOf<wxComboBox>(*frame);
        EXPECT_TRUE(WaitFor("selector", [=] { return selector->HasFocus(); }));
    }
}
