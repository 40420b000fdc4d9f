#include "debuggertest.h"

// The variable list file: what the host's loop and locale have to do with it.

namespace {

class ListFile : public DebuggerTest
{
};

} // namespace

TEST_F(ListFile, AnswersUnderAMessageOfTheLoadAreShownAfterwards)
{
    ASSERT_TRUE(Open());
    files.Write("other.plc", "MW1/D\nEB64/D\nMW3/D\n");
    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(DialogOpens("file dialog [T76]"));
    ASSERT_TRUE(ChooseFile(files.File("other.plc")));
    ASSERT_TRUE(DialogOpens("message [T97] T88 64"));
    ASSERT_TRUE(Requests({"read 0 MW1", "start 0"}));

    Answer(0, 7);
    AwaitThreeTicks();
    EXPECT_TRUE(AnswerDialog("message [T97] T88 64", wxID_OK));

    EXPECT_TRUE(Shows({"MW 1|7|T30", "MW 3|?|T30"}));
}

TEST_F(ListFile, AListInAFolderWithBlanksUmlautsAndPercentSignsIsLoadedAndSaved)
{
    const std::string folder = "100% Fl\xC3\xA4"
                               "che %d";
    const std::string list = folder + "/a list.plc";
    std::filesystem::create_directory(files.File(folder));
    Configure("PLCLastFile", files.Write(list, "MW1/D\n"));
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Shows({"MW 1|?|T30"}));

    Click(deleteButton);
    ASSERT_TRUE(Shows({}));
    ChooseMenu(wxID_SAVE);

    EXPECT_TRUE(Await("saved", [&] { return files.Read(list).empty(); }));
}
