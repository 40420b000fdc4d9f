#pragma once

#include "doubleclicktime.h"
#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <functional>
#include <memory>

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

    /// Double clicks into a cell. What it leads to later, too, has come then.
    void DoubleClickAndSettle(int row, int column)
    {
        bool seen = false;
        const auto look = [&seen](wxMouseEvent& event) {
            seen = true;
            event.Skip();
        };
        grid->GetGridWindow()->Bind(wxEVT_LEFT_DCLICK, look);
        DoubleClickCell(*grid, row, column);
        EXPECT_TRUE(WaitFor("double click handled", [&seen] { return seen; }));
        EXPECT_TRUE(grid->GetGridWindow()->Unbind(wxEVT_LEFT_DCLICK, look));
        OutliveDoubleClickTime();
    }

    void OutliveDoubleClickTime()
    {
        const DoubleClickTime time;
        EXPECT_TRUE(WaitFor("double-click time over", [&time] { return time.IsOver(); }));
    }

    /// Clicks into the value cell of row 1, on which the cursor is, and does @p next before the
    /// click can open the editor. What the click leads to has come then.
    void ClickCursorsValueAnd(const std::function<void()>& next)
    {
        bool inTime = false;
        while (!inTime && !HasFailure()) {
            grid->DiscardEdit();
            GoTo(1, varColumnValue);
            std::unique_ptr<DoubleClickTime> sincePress;
            const auto press = [&sincePress](wxMouseEvent& event) {
                sincePress = std::make_unique<DoubleClickTime>();
                event.Skip();
            };
            grid->GetGridWindow()->Bind(wxEVT_LEFT_DOWN, press);
            ClickCell(*grid, 1, varColumnValue);
            EXPECT_TRUE(WaitFor("click", [&sincePress] { return sincePress != nullptr; }));
            EXPECT_TRUE(grid->GetGridWindow()->Unbind(wxEVT_LEFT_DOWN, press));
            next();
            inTime = sincePress != nullptr && !sincePress->IsOver();
            OutliveDoubleClickTime();
        }
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
