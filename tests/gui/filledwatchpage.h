#pragma once

#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

/// A watch page with four variables, whose values 1 to 4 are known.
class VarGrid : public WatchPage
{
protected:
    void SetUp() override
    {
        WatchPage::SetUp();
        Load({"MB1/D", "MW2/H", "MD4/D", "MB8/D"});
        for (std::uint16_t id = 0; id < 4; ++id) {
            Answer(id, id + 1);
        }
    }

    /// Waits for a cursor position.
    void ExpectCursor(int row, int column)
    {
        EXPECT_TRUE(WaitFor("cursor", [this, row, column] {
            return grid->GetGridCursorRow() == row && grid->GetGridCursorCol() == column;
        }));
    }

    void ExpectSelected(const Rows& rows)
    {
        EXPECT_TRUE(WaitFor("selection", [this, &rows] { return Selected() == rows; }));
        EXPECT_EQ(Selected(), rows);
    }

    /// Types into the editor that is open.
    void TypeValue(const char* text)
    {
        Type(text);
        ASSERT_TRUE(WaitFor("typed", [this, text] { return EditorText() == text; }));
    }

    void PressAndWaitForEnd(int key)
    {
        PressKey(key);
        ASSERT_TRUE(WaitFor("editor closed", [this] { return !grid->IsCellEditControlShown(); }));
        RunPending();
    }

    /// Lets a key have its effect, if it has one.
    void PressAndSettle(int key)
    {
        PressKey(key);
        // The key that follows is handled after it.
        bool seen = false;
        const auto look = [&seen](wxKeyEvent& event) {
            seen = seen || event.GetKeyCode() == WXK_F12;
            event.Skip();
        };
        grid->GetGridWindow()->Bind(wxEVT_KEY_DOWN, look);
        PressKey(WXK_F12);
        EXPECT_TRUE(WaitFor("key handled", [&seen] { return seen; }));
        EXPECT_TRUE(grid->GetGridWindow()->Unbind(wxEVT_KEY_DOWN, look));
    }

    /// Expects the modify dialog and cancels it.
    void ExpectModifyDialog()
    {
        dialogs.Dialog("T91", [](wxDialog& dialog) { Click(*dialog.FindWindow(wxID_CANCEL)); });
    }

    void WaitForDialogGone()
    {
        ASSERT_TRUE(WaitFor("dialog", [this] { return dialogs.AllShown(); }));
        ASSERT_TRUE(WaitFor("dialog gone", [this] { return frame->IsActive(); }));
        RunPending();
    }

    void Resize(int width, int height)
    {
        frame->SetSize(width, height);
        ASSERT_TRUE(WaitFor("resized", [&] { return frame->GetSize() == wxSize(width, height); }));
        RunPending();
    }
};
