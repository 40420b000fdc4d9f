#include "debuggertest.h"

#include <gmock/gmock.h>

// The variable list file: what loading sends and shows, what saving writes.

namespace {

class ListFile : public DebuggerTest
{
protected:
    /// @return the number of rows and the last operand.
    static std::pair<std::size_t, std::string> Extent()
    {
        const Words rows = WatchList();
        return {rows.size(), rows.empty() ? "" : rows.back()};
    }
};

/// @return the lines "MB0/D" and so on.
Words ManyLines(int count)
{
    Words lines;
    for (int number = 0; number < count; ++number) {
        lines.push_back("MB" + std::to_string(number) + "/D");
    }
    return lines;
}

} // namespace

TEST_F(ListFile, EveryOperandAndFormatIsLoadedInFileOrder)
{
    UseList(
        {"M10.3/B", "EW4/H", "T5/D", "Z6/D", "DB10.DBW12/D", "DB20.DBX3.1/B", "MD8/G", "AB1/H"});

    ASSERT_TRUE(Open());

    EXPECT_TRUE(Shows(
        {"M 10.3|?|T32",
         "EW 4|?|T31",
         "T 5|?|T30",
         "Z 6|?|T30",
         "DB10.DBW 12|?|T30",
         "DB20.DBX 3.1|?|T32",
         "MD 8|?|T33",
         "AB 1|?|T31"}));
    EXPECT_TRUE(Requests(
        {"read 0 M10.3",
         "start 0",
         "read 1 EW4",
         "start 1",
         "read 2 T5",
         "start 2",
         "read 3 Z6",
         "start 3",
         "read 4 DB10.DBW12",
         "start 4",
         "read 5 DB20.DBX3.1",
         "start 5",
         "read 6 MD8",
         "start 6",
         "read 7 AB1",
         "start 7"}));
}

TEST_F(ListFile, LinesThatAreNoVariableAreSkippedSilently)
{
    UseList(
        {"m10.3/b",
         "M10.3/B;x",
         "xM10.3/B",
         "DB5.DBW2/H",
         "T5",
         "",
         "; remark",
         "MW5",
         "MX5.1/B",
         "M 10.3 /B"});

    ASSERT_TRUE(Open());

    EXPECT_TRUE(Shows({"M 10.3|?|T32"}));
    EXPECT_TRUE(Requests({"read 0 M10.3", "start 0"}));
}

TEST_F(ListFile, AnyLineEndAndAByteOrderMarkAreRead)
{
    const std::string path = files.Write("list.plc", "\xEF\xBB\xBFMW1/D\r\nMW3/D\rMW5/D\nMW7/D");
    Configure("PLCLastFile", path);

    ASSERT_TRUE(Open());

    EXPECT_TRUE(Shows({"MW 1|?|T30", "MW 3|?|T30", "MW 5|?|T30", "MW 7|?|T30"}));
}

TEST_F(ListFile, ARefusedAddressIsReportedAndTheLoadGoesOn)
{
    UseList({"MW1/D", "EB64/D", "MW3/D"});
    OpenBehindMessages();

    EXPECT_TRUE(AnswerDialog("message [T97] T88 64", wxID_OK));

    ASSERT_TRUE(WindowOpens());
    EXPECT_TRUE(Shows({"MW 1|?|T30", "MW 3|?|T30"}));
    EXPECT_TRUE(Requests({"read 0 MW1", "start 0", "read 1 MW3", "start 1"}));
}

TEST_F(ListFile, TwentyOneLinesLoadWithoutAMessage)
{
    UseList(ManyLines(21));

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui(Extent), (std::pair<std::size_t, std::string>{21, "MB 20|?|T30"}));
}

TEST_F(ListFile, OfTwentyFiveLinesTwentyOneAreLoadedAndTheListCountsAsModified)
{
    UseList(ManyLines(25));
    OpenBehindMessages();

    EXPECT_TRUE(AnswerDialog("message [T99] T98 20", wxID_OK));

    ASSERT_TRUE(WindowOpens());
    EXPECT_EQ(OnGui(Extent), (std::pair<std::size_t, std::string>{21, "MB 20|?|T30"}));
    CloseFrame();
    EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    EXPECT_TRUE(FrameGoes());
}

TEST_F(ListFile, AMissingLastFileIsReportedAndTheWindowOpensEmpty)
{
    const std::string path = files.File("gone.plc");
    Configure("PLCLastFile", path);
    OpenBehindMessages();

    EXPECT_TRUE(AnswerDialog("message [T99] T92 " + path, wxID_OK));

    ASSERT_TRUE(WindowOpens());
    EXPECT_TRUE(Shows({}));
}

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

TEST_F(ListFile, SavedAndLoadedAgainTheListIsTheSame)
{
    const Words lines = {
        "M10.3/B", "EW4/H", "T5/D", "DB10.DBW12/D", "DB20.DBX3.1/B", "MD8/G", "A0.7/B"};
    UseList(lines);
    ASSERT_TRUE(Open());
    const Words shown = OnGui(WatchList);

    ChooseMenu(wxID_SAVEAS);
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(ChooseFile(files.File("copy.plc")));
    ASSERT_TRUE(Await("saved", [this] { return !files.Read("copy.plc").empty(); }));
    EXPECT_EQ(files.Read("copy.plc"), files.Read("list.plc"));

    Destroy();
    Configure("PLCLastFile", files.File("copy.plc"));
    ASSERT_TRUE(Open());
    EXPECT_TRUE(Shows(shown));
}

TEST_F(ListFile, AnEmptyListIsSavedAsAnEmptyFile)
{
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_SAVEAS);
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(ChooseFile(files.File("empty.plc")));

    ASSERT_TRUE(
        Await("saved", [this] { return std::filesystem::exists(files.File("empty.plc")); }));
    EXPECT_EQ(files.Read("empty.plc"), "");
}

TEST_F(ListFile, AListInAFolderWithBlanksUmlautsAndPercentSignsIsLoadedAndSaved)
{
    const std::string folder = files.File("100% Fl\xC3\xA4"
                                          "che %d");
    std::filesystem::create_directory(folder);
    const std::string path = files.Write(
        "100% Fl\xC3\xA4"
        "che %d/a list.plc",
        "MW1/D\n");
    Configure("PLCLastFile", path);
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Shows({"MW 1|?|T30"}));

    Click(deleteButton);
    ASSERT_TRUE(Shows({}));
    ChooseMenu(wxID_SAVE);

    EXPECT_TRUE(Await("saved", [this] {
        return files
            .Read("100% Fl\xC3\xA4"
                  "che %d/a list.plc")
            .empty();
    }));
}

TEST_F(ListFile, ASaveThatFailsLeavesTheOldFileAndShowsNoDialog)
{
    const std::string folder = files.File("lists");
    std::filesystem::create_directory(folder);
    files.Write("lists/list.plc", "MW1/D\n");
    Configure("PLCLastFile", folder + "/list.plc");
    ASSERT_TRUE(Open());
    std::filesystem::rename(folder, files.File("moved away"));
    Click(deleteButton);
    ASSERT_TRUE(Shows({}));

    ChooseMenu(wxID_SAVE);
    AwaitThreeTicks();

    EXPECT_EQ(files.Read("moved away/list.plc"), "MW1/D\n");
    CloseFrame(); // asks nothing: a save clears the mark in any case
    EXPECT_TRUE(FrameGoes());
}
