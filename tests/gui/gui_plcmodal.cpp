#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcmodal.h"
#include "recordinghost.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/frame.h>
#include <wx/sizer.h>

#include <functional>

namespace {

/// A dialog with an OK button.
class PlainDialog : public wxDialog
{
public:
    PlainDialog() : wxDialog(nullptr, wxID_ANY, "plain")
    {
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        sizer->Add(new wxButton(this, wxID_OK, "ok"));
        SetSizerAndFit(sizer);
    }
};

/// Runs a piece of work inside a host's gtk_main(), as a handler of its window would, and then ends
/// that loop from a later turn of it.
/// @return true when the loop was still running after the work.
bool HostLoopOutlives(const std::function<void()>& work)
{
    struct Host
    {
        std::function<void()> work;
        bool ended = false;
        bool outlived = false;
    } host{work, false, false};

    g_idle_add(
        [](gpointer data) -> gboolean {
            static_cast<Host*>(data)->work();
            // If the work has ended the loop, this is not reached inside it any more.
            g_timeout_add(
                1,
                [](gpointer later) -> gboolean {
                    auto* ending = static_cast<Host*>(later);
                    ending->ended = true;
                    ending->outlived = gtk_main_level() == 1;
                    if (ending->outlived) {
                        gtk_main_quit();
                    }
                    return G_SOURCE_REMOVE;
                },
                data);
            return G_SOURCE_REMOVE;
        },
        &host);
    gtk_main();
    EXPECT_TRUE(WaitFor("work done", [&host] { return host.ended; }));
    return host.outlived;
}

void ClickOk(wxDialog& dialog)
{
    Click(*dialog.FindWindow(wxID_OK));
}

class Modal : public testing::Test
{
protected:
    NumberedTexts texts;
    ExpectedDialogs dialogs;
};

bool pendingWorkDone = false;

void PendingWork()
{
    pendingWorkDone = true;
}

} // namespace

// ---- The host's main loop

TEST_F(Modal, DialogLeavesTheHostsLoopRunning)
{
    dialogs.Dialog("plain", ClickOk);

    EXPECT_TRUE(HostLoopOutlives([] {
        PlainDialog dialog;
        EXPECT_EQ(RunModal(dialog), wxID_OK);
    }));
}

TEST_F(Modal, DialogsOneAfterTheOtherLeaveTheHostsLoopRunning)
{
    dialogs.Dialog("plain", ClickOk);
    dialogs.Dialog("plain", ClickOk);

    EXPECT_TRUE(HostLoopOutlives([] {
        for (int times = 0; times < 2; ++times) {
            PlainDialog dialog;
            EXPECT_EQ(RunModal(dialog), wxID_OK);
        }
    }));
}

TEST_F(Modal, NestedDialogsLeaveTheHostsLoopRunning)
{
    dialogs.Dialog("plain", [this](wxDialog& outer) {
        dialogs.Dialog("plain", ClickOk);
        dialogs.OpenedMessage("T85", "inner", [](wxDialog&) { PressKey(WXK_RETURN); });
        PlainDialog inner;
        EXPECT_EQ(RunModal(inner), wxID_OK);
        ShowMessage(TextId::ErrorCaption, "inner");
        EXPECT_TRUE(WaitFor("outer dialog active", [&] { return outer.IsActive(); }));
        ClickOk(outer);
    });

    EXPECT_TRUE(HostLoopOutlives([] {
        PlainDialog dialog;
        EXPECT_EQ(RunModal(dialog), wxID_OK);
    }));
}

TEST_F(Modal, FileDialogLeavesTheHostsLoopRunning)
{
    dialogs.File("choose", std::nullopt);

    EXPECT_TRUE(HostLoopOutlives([] {
        wxFileDialog dialog(nullptr, "choose", "", "", "*.plc", wxFD_OPEN);
        EXPECT_EQ(RunModal(dialog), wxID_CANCEL);
    }));
}

TEST_F(Modal, MessageLeavesTheHostsLoopRunning)
{
    dialogs.OpenedMessage("T85", "words", [](wxDialog&) { PressKey(WXK_RETURN); });

    EXPECT_TRUE(HostLoopOutlives([] { ShowMessage(TextId::ErrorCaption, "words"); }));
}

// ---- Questions

TEST_F(Modal, QuestionIsAnsweredYesByYesOnly)
{
    wxFrame parent(nullptr, wxID_ANY, "parent");
    ASSERT_TRUE(ShowActive(parent));

    struct Answer
    {
        int key;
        bool yes;
    };

    for (const Answer& answer : {Answer{WXK_RETURN, true}, Answer{WXK_ESCAPE, false}}) {
        dialogs.OpenedQuestion("T79", "T78", [&answer](wxDialog&) { PressKey(answer.key); });
        EXPECT_EQ(AskYesNo(&parent, TextId::SaveQuestionCaption, TextId::SaveQuestion), answer.yes);
    }
    dialogs.Question("T79", "T78", wxID_NO);
    EXPECT_FALSE(AskYesNo(&parent, TextId::SaveQuestionCaption, TextId::SaveQuestion));
}

// ---- Ending what is open

TEST_F(Modal, EveryOpenDialogIsEndedAsCancelled)
{
    int innerResult = 0;
    dialogs.Dialog("plain", [&](wxDialog&) {
        dialogs.Dialog("plain", [](wxDialog&) { EndOpenDialogs(); });
        PlainDialog inner;
        innerResult = RunModal(inner);
    });
    PlainDialog outer;

    EXPECT_EQ(RunModal(outer), wxID_CANCEL);

    EXPECT_EQ(innerResult, wxID_CANCEL);
}

TEST_F(Modal, AnOpenMessageAndItsDialogAreEndedAsCancelled)
{
    bool messageReturned = false;
    dialogs.Dialog("plain", [&](wxDialog&) {
        dialogs.OpenedMessage("T85", "words", [](wxDialog&) { EndOpenDialogs(); });
        ShowMessage(TextId::ErrorCaption, "words");
        messageReturned = true;
    });
    PlainDialog outer;

    EXPECT_EQ(RunModal(outer), wxID_CANCEL);

    EXPECT_TRUE(messageReturned);
}

TEST_F(Modal, AnOpenQuestionThatIsEndedIsANo)
{
    dialogs.OpenedQuestion("T79", "T78", [](wxDialog&) { EndOpenDialogs(); });

    EXPECT_FALSE(AskYesNo(nullptr, TextId::SaveQuestionCaption, TextId::SaveQuestion));
}

TEST_F(Modal, ADialogThatIsEndedBeforeItCouldOpenNeverOpens)
{
    HostLoopOutlives([] {
        g_idle_add_full(
            G_PRIORITY_HIGH,
            [](gpointer /*unused*/) -> gboolean {
                EndOpenDialogs();
                return G_SOURCE_REMOVE;
            },
            nullptr,
            nullptr);
        PlainDialog dialog;
        EXPECT_EQ(RunModal(dialog), wxID_CANCEL);
    });
}

TEST_F(Modal, EndingNothingIsHarmless)
{
    EndOpenDialogs();

    dialogs.Dialog("plain", ClickOk);
    PlainDialog dialog;
    EXPECT_EQ(RunModal(dialog), wxID_OK);
}

// ---- Calls out of the plug-in's code

TEST_F(Modal, CallOutIsActiveWhileADialogOrACallbackRuns)
{
    RecordingHost host;
    bool activeInCallback = false;
    host.reaction = [&](const RecordedRequest&) { activeInCallback = PlcCallOut::Active(); };
    bool activeInDialog = false;
    dialogs.Dialog("plain", [&](wxDialog& dialog) {
        activeInDialog = PlcCallOut::Active();
        ClickOk(dialog);
    });

    EXPECT_FALSE(PlcCallOut::Active());
    CallHost(host.init.pfnReadVarRequest, CMD_DATA{});
    PlainDialog dialog;
    RunModal(dialog);

    EXPECT_TRUE(activeInCallback);
    EXPECT_TRUE(activeInDialog);
    EXPECT_FALSE(PlcCallOut::Active());
}

TEST_F(Modal, WorkWaitsUntilNoCallOutIsAlive)
{
    pendingWorkDone = false;
    {
        const PlcCallOut outer;
        {
            const PlcCallOut inner;
            PlcCallOut::RunWhenNoneActive(PendingWork);
            RunPending();
            EXPECT_FALSE(pendingWorkDone);
        }
        RunPending();
        EXPECT_FALSE(pendingWorkDone);
    }
    EXPECT_FALSE(pendingWorkDone);
    EXPECT_TRUE(WaitFor("work", [] { return pendingWorkDone; }));
}

TEST_F(Modal, WorkWaitsForACallOutThatBeganMeanwhile)
{
    pendingWorkDone = false;
    PlcCallOut::RunWhenNoneActive(PendingWork);
    {
        const PlcCallOut callOut;
        RunPending();
        EXPECT_FALSE(pendingWorkDone);
    }
    EXPECT_TRUE(WaitFor("work", [] { return pendingWorkDone; }));
}

TEST_F(Modal, WorkRunsFromTheLoopWhenNoCallOutIsAlive)
{
    pendingWorkDone = false;

    PlcCallOut::RunWhenNoneActive(PendingWork);

    EXPECT_FALSE(pendingWorkDone);
    EXPECT_TRUE(WaitFor("work", [] { return pendingWorkDone; }));
}

TEST_F(Modal, ACallbackThatIsMissingIsNotCalled)
{
    CallHost(nullptr, CMD_DATA{});

    EXPECT_FALSE(PlcCallOut::Active());
}
