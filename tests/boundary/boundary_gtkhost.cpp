#include "debuggertest.h"

#include <wx/app.h>

// What only a plain GTK host can see.

using GtkHost = DebuggerTest;

TEST_F(GtkHost, CreateStartsTheToolkitUnderTheDebuggersName)
{
    ASSERT_EQ(OnGui([] { return wxTheApp; }), nullptr);

    ASSERT_TRUE(Open());

    EXPECT_EQ(OnGui([] { return wxTheApp->GetAppName(); }), "PLCDebugger");
    EXPECT_EQ(OnGui([] { return wxTheApp->GetVendorName(); }), "Quorvane GmbH");
    EXPECT_EQ(OnGui([] { return Frame()->GetParent(); }), nullptr);
}

TEST_F(GtkHost, CreateAfterTheCloseBoxWithoutDestroyStillLetsDestroyEndTheToolkit)
{
    ASSERT_TRUE(Open());
    CloseFrame();
    ASSERT_TRUE(FrameGoes());

    ASSERT_TRUE(Open());
    Destroy();

    EXPECT_EQ(OnGui([] { return wxTheApp; }), nullptr);
}
