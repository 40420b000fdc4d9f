#include "debuggertest.h"
#include "wxhost.h"

#include <wx/app.h>

// What only a host that is a wxWidgets program can see.

using WxHost = DebuggerTest;

TEST_F(WxHost, TheDebuggersWindowIsAChildOfTheHostsWindow)
{
    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return Frame()->GetParent(); }), &HostFrame());
}

TEST_F(WxHost, DestroyEndsNeitherTheApplicationNorItsWindow)
{
    const wxAppConsole* app = OnGui([] { return wxTheApp; });
    ASSERT_TRUE(Open());

    Destroy();

    EXPECT_EQ(OnGui([] { return wxTheApp; }), app);
    EXPECT_EQ(HostAppExits(), 0);
    EXPECT_TRUE(OnGui([] { return HostFrame().IsShown(); }));
    EXPECT_FALSE(HostLoopHasEnded());
}

TEST_F(WxHost, ItsWindowMayGoUnderADialog)
{
    wxFrame* const window = OnGui([] {
        auto* created = new wxFrame(nullptr, wxID_ANY, "Machine part");
        created->Show();
        wxTheApp->SetTopWindow(created);
        return created;
    });
    ASSERT_TRUE(Open());
    ChooseMenu(wxID_HELP);
    ASSERT_TRUE(DialogOpens("dialog [T67]"));

    PostToGui([window] { window->Destroy(); });

    EXPECT_TRUE(FrameGoes());
    EXPECT_TRUE(Await("no dialog", [this] { return watch.Innermost() == nullptr; }));
    EXPECT_EQ(Answer(0, 1), 0);
    EXPECT_FALSE(HostLoopHasEnded());
    OnGui([] { wxTheApp->SetTopWindow(&HostFrame()); });
    EXPECT_TRUE(Open());
}

TEST_F(WxHost, TheExitItemDoesNotRunTheHostsOwnExit)
{
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_EXIT);

    ASSERT_TRUE(Await("the frame hidden", [] { return !Frame()->IsShown(); }));
    AwaitThreeTicks();
    EXPECT_EQ(OnGui(HostExitCommands), 0);
}

TEST_F(WxHost, NoFileCommandReachesTheHost)
{
    int reached = 0;
    OnGui([&] {
        HostFrame().Bind(
            wxEVT_MENU,
            [&](wxCommandEvent& event) {
                ++reached;
                event.Skip();
            },
            wxID_ANY);
    });
    ASSERT_TRUE(Open());

    ChooseMenu(wxID_NEW);
    ChooseMenu(wxID_SAVE);
    ChooseMenu(wxID_HELP);
    EXPECT_TRUE(AnswerDialog("dialog [T67]", wxID_OK));

    EXPECT_EQ(OnGui([&] { return reached; }), 0);
}

TEST_F(WxHost, TheHostsApplicationNameIsItsOwn)
{
    const wxString name = OnGui([] { return wxTheApp->GetAppName(); });
    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return wxTheApp->GetAppName(); }), name);
}
