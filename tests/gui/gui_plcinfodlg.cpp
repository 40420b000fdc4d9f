#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcinfodlg.h"
#include "plcmodal.h"
#include "useractions.h"

#include <gmock/gmock.h>
#include <wx/button.h>
#include <wx/stattext.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

class InfoDialog : public testing::Test
{
protected:
    NumberedTexts texts;
    ExpectedDialogs dialogs;
};

std::vector<wxStaticText*> LinesOf(wxDialog& dialog)
{
    std::vector<wxStaticText*> lines;
    for (wxWindow* child : dialog.GetChildren()) {
        if (auto* line = dynamic_cast<wxStaticText*>(child)) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> WordsOf(wxDialog& dialog)
{
    std::vector<std::string> words;
    for (const wxStaticText* line : LinesOf(dialog)) {
        words.push_back(line->GetLabel().ToStdString());
    }
    return words;
}

} // namespace

TEST_F(InfoDialog, ShowsThreeLinesAndTheVersion)
{
    PlcInfoDlg dialog(nullptr);

    EXPECT_EQ(dialog.GetTitle(), "T67");
    EXPECT_THAT(WordsOf(dialog), ElementsAre("T45", "T46   01.14", "T48"));
    EXPECT_EQ(dialog.FindWindow(wxID_OK)->GetLabel(), "T40");
}

TEST_F(InfoDialog, ShowsTheVersionThatTheLibraryIsBuiltAs)
{
    const wxString version = wxString::Format("%02d.%02d", VERSION_MAJOR, VERSION_MINOR);

    PlcInfoDlg dialog(nullptr);

    EXPECT_EQ(WordsOf(dialog).at(1), "T46   " + version.ToStdString());
}

TEST_F(InfoDialog, WithoutItsVersionLabelKeepsTheBlanksBeforeTheVersion)
{
    texts.Change({}, {46});
    PlcInfoDlg dialog(nullptr);

    EXPECT_THAT(WordsOf(dialog), ElementsAre("T45", "   01.14", "T48"));
}

TEST_F(InfoDialog, HasItsButtonAtTheRightOfTheLines)
{
    PlcInfoDlg dialog(nullptr);

    const wxRect button = dialog.FindWindow(wxID_OK)->GetRect();
    for (const wxStaticText* line : LinesOf(dialog)) {
        EXPECT_LT(line->GetRect().GetRight(), button.GetLeft());
    }
}

TEST_F(InfoDialog, CannotBeMadeSmallerThanItsContent)
{
    PlcInfoDlg dialog(nullptr);

    EXPECT_EQ(dialog.GetMinSize(), dialog.GetSize());
}

TEST_F(InfoDialog, EndsByItsButton)
{
    PlcInfoDlg dialog(nullptr);
    dialogs.Dialog("T67", [](wxDialog& shown) { Click(*shown.FindWindow(wxID_OK)); });

    EXPECT_EQ(RunModal(dialog), wxID_OK);
}

TEST_F(InfoDialog, EndsByItsCloseBox)
{
    PlcInfoDlg dialog(nullptr);
    dialogs.Dialog("T67", [](wxDialog& shown) { shown.Close(); });

    EXPECT_NE(RunModal(dialog), wxID_NONE);
    EXPECT_FALSE(dialog.IsShown());
}
