#include "destroyinside.h"

#include <gmock/gmock.h>

// The host takes the debugger down while the debugger's own code is running: from inside a
// callback, or while a dialog is open.

TEST_F(DestroyInside, TheTallFrameCallbackMakesCreateReturnZero)
{
    UseList({"MW20/D"});
    static plchost::Plugin* callee = nullptr;
    callee = &plugin;
    host.init.pfnTallFrame = []() -> std::int32_t {
        callee->destroy();
        return 1;
    };

    EXPECT_EQ(Create(), 0);

    EXPECT_TRUE(EverythingGoes());
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_TRUE(Requests({"read 0 MW20", "start 0", "release 0"}));
}

TEST_F(DestroyInside, ACallbackOfTheLastListMakesCreateReturnZero)
{
    UseList({"MW20/D", "MW22/D"});
    DestroyInCallback(Callback::Read);

    EXPECT_EQ(Create(), 0);

    EXPECT_TRUE(EverythingGoes());
    EXPECT_EQ(Answer(0, 1), 0);
    const Words sent = TakeRequests();
    EXPECT_THAT(sent, testing::Contains("release 0").Times(1));
    ReopenAndUse();
}

TEST_F(DestroyInside, AMessageDuringCreateMakesCreateReturnZero)
{
    std::filesystem::remove(files.File("machine_plcdbgi.dat"));
    int created = -1;
    PostToGui([&] { created = plugin.create(&host.init); });
    ASSERT_TRUE(DialogOpens("message [T85] T92 " + files.File("machine_plcdbgi.dat")));

    PostToGui([this] { plugin.destroy(); });

    // The second attempt to read the file may still be reported.
    ASSERT_TRUE(Await("create over", [&] {
        if (wxDialog* dialog = watch.Innermost(); dialog != nullptr) {
            watch.Expect(watch.InnermostInWords());
            CancelDialog(*dialog);
        }
        return created != -1;
    }));
    EXPECT_EQ(created, 0);
    EXPECT_TRUE(EverythingGoes());
    UseProgram({{"U E 0.0"}});
    ReopenAndUse();
}

TEST_F(DestroyInside, ADebuggerThatEndedDuringCreateIsForgotten)
{
    UseList({"MW20/D"});
    DestroyInCallback(Callback::Read);
    ASSERT_EQ(Create(), 0);
    ASSERT_TRUE(EverythingGoes());
    TakeRequests();

    ReopenAndUse();
}

TEST_F(DestroyInside, TheReadCallbackOfDefine)
{
    ASSERT_TRUE(Open());
    DestroyInCallback(Callback::Read);

    Define("1.0");

    EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    EXPECT_TRUE(EverythingGoes());
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_TRUE(Requests({"read 0 A1.0", "release 0"}));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, TheStartCallbackOfDefine)
{
    ASSERT_TRUE(Open());
    DestroyInCallback(Callback::Delete);

    Define("1.0");

    EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"read 0 A1.0", "start 0", "release 0"}));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, TheWriteCallback)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    DestroyInCallback(Callback::Write);

    EnterValue(0, "5");

    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"write MW20=5", "release 0"}));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, TheReleaseCallbackOfDelete)
{
    UseList({"MW20/D", "MW22/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    DestroyInCallback(Callback::Delete);

    Click(deleteButton);

    EXPECT_TRUE(EverythingGoes());
    EXPECT_THAT(TakeRequests(), testing::Contains("release 1").Times(1));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, TheProgramStateCallback)
{
    ASSERT_TRUE(Open());
    DestroyInCallback(Callback::PrgState);

    ClickTab(programPage);

    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"state 0..1 count 2"}));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, TheReleaseCallbackOfTheCloseBoxRunsTheExitWorkOnce)
{
    UseList({"MW20/D", "MW22/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    DestroyInCallback(Callback::Delete);

    CloseFrame();

    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"release 0", "release 1"}));
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInside, AnAnswerThatLeadsToDestroyInsideTheNextTick)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();

    // The host reacts to the timer's own tick, in the middle of a queue of answers.
    for (int answer = 0; answer < 100; ++answer) {
        Answer(0, answer);
    }
    Destroy();

    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"release 0"}));
}

namespace {

class DestroyInsideADialog : public DestroyInside
{
protected:
    void SetUp() override
    {
        UseList({"MW20/D"});
        ASSERT_TRUE(Open());
        ASSERT_TRUE(Requests({"read 0 MW20", "start 0"}));
    }

    /// Has a dialog open; destroys; looks whether all goes and comes again.
    void DestroyUnder(const std::string& what)
    {
        ASSERT_TRUE(DialogOpens(what));
        DestroyNow();
    }

    void DestroyNow()
    {
        TakeRequests();

        PostToGui([this] { plugin.destroy(); });

        EXPECT_TRUE(EverythingGoes());
        EXPECT_EQ(Answer(0, 1), 0);
    }

    /// A variable more than in the file.
    void ChangeList()
    {
        Define("22");
        ASSERT_TRUE(Requests({"read 1 MW22", "start 1"}));
    }

    /// Under the question of a menu command: the exit work asks again, about a list that nothing
    /// has touched meanwhile.
    void DestroyUnderTheQuestionOf(int menuItem)
    {
        ChangeList();
        ChooseMenu(menuItem);
        ASSERT_TRUE(DialogOpens("question [T79] T78"));
        const wxDialog* cancelled = OnGui([this] { return watch.Innermost(); });
        PostToGui([this] { plugin.destroy(); });
        ASSERT_TRUE(Await("another question", [&] { return watch.Innermost() != cancelled; }));
        EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_YES));
        EXPECT_TRUE(EverythingGoes());
        EXPECT_EQ(files.Read("list.plc"), "MW20/D\nMW22/D\n");
        EXPECT_TRUE(Requests({"release 0", "release 1"}));
        ReopenAndUse();
    }
};

} // namespace

TEST_F(DestroyInsideADialog, Define)
{
    Click(defineButton);
    DestroyUnder("dialog [T9]");
    EXPECT_TRUE(Requests({"release 0"}));
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, Modify)
{
    Click(modifyButton);
    DestroyUnder("dialog [T91]");
    EXPECT_TRUE(Requests({"release 0"}));
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheMessageOverTheSettings)
{
    Define("x");
    DestroyUnder("message [T97] T101");
    EXPECT_TRUE(Requests({"release 0"}));
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheInfo)
{
    ChooseMenu(wxID_HELP);
    DestroyUnder("dialog [T67]");
    EXPECT_TRUE(Requests({"release 0"}));
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, OpenFile)
{
    ChooseMenu(wxID_OPEN);
    ASSERT_TRUE(Requests({"release 0"}));
    DestroyUnder("file dialog [T76]");
    EXPECT_TRUE(SendsNothing());
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, SaveFileAs)
{
    ChooseMenu(wxID_SAVEAS);
    DestroyUnder("file dialog [T80]");
    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\n");
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheOverwriteQuestionOfSaveFileAs)
{
    ChooseMenu(wxID_SAVEAS);
    ASSERT_TRUE(DialogOpens("file dialog [T80]"));
    ASSERT_TRUE(EnterFile(files.File("list.plc")));
    ASSERT_TRUE(FileDialogAsks());
    DestroyNow();
    EXPECT_TRUE(Requests({"release 0"}));
    EXPECT_EQ(files.Read("list.plc"), "MW20/D\n");
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheSaveQuestionOfNew)
{
    DestroyUnderTheQuestionOf(wxID_NEW);
}

TEST_F(DestroyInsideADialog, TheSaveQuestionOfOpen)
{
    DestroyUnderTheQuestionOf(wxID_OPEN);
}

TEST_F(DestroyInsideADialog, TheSaveQuestionOfTheCloseBox)
{
    ChangeList();
    CloseFrame();
    ASSERT_TRUE(Requests({"release 0", "release 1"}));
    DestroyUnder("question [T79] T78");
    EXPECT_TRUE(SendsNothing()) << "the exit work runs once";
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheSaveQuestionOfAnotherDestroy)
{
    ChangeList();
    PostToGui([this] { plugin.destroy(); });
    ASSERT_TRUE(Requests({"release 0", "release 1"}));
    DestroyUnder("question [T79] T78");
    EXPECT_TRUE(SendsNothing()) << "the exit work runs once";
    ReopenAndUse();
}

TEST_F(DestroyInsideADialog, TheCloseBoxUnderADialogIsRefusedByTheToolkit)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens("dialog [T9]"));

    CloseFrame();

    AwaitThreeTicks();
    EXPECT_NE(OnGui(Frame), nullptr);
    EXPECT_TRUE(AnswerDialog("dialog [T9]", wxID_CANCEL));
    EXPECT_TRUE(SendsNothing());
}
