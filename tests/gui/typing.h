#pragma once

#include "debugframe.h"
#include "editortext.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

/// The debugger's window with four variables, whose values 1 to 4 are known, under the operator's
/// hands.
class Typing : public DebugFrame
{
protected:
    void SetUp() override
    {
        DebugFrame::SetUp();
        OpenOn("MB1/D\nMW2/H\nMD4/D\nMB8/D\n");
        for (std::uint16_t id = 0; id < 4; ++id) {
            Answer(id, id + 1);
        }
        ASSERT_TRUE(WaitFor("values", [this] { return Column(1)[3] == "4"; }));
        ASSERT_TRUE(WaitForList());
    }

    testing::AssertionResult WaitForList() const
    {
        return WaitFor(
            "keyboard in the list", [this] { return grid->GetGridWindow()->HasFocus(); });
    }

    testing::AssertionResult WaitForCursor(int row, int column) const
    {
        return WaitFor("cursor", [=] {
            return grid->GetGridCursorRow() == row && grid->GetGridCursorCol() == column;
        });
    }

    testing::AssertionResult WaitForText(const std::string& text) const
    {
        return WaitFor("\"" + text + "\" typed", [&] { return TextInEditor(*grid) == text; });
    }

    testing::AssertionResult WaitForEnd() const
    {
        return WaitFor("edit over", [this] { return !grid->IsCellEditControlShown(); });
    }

    /// Expects that the text typed into row 0 goes, and nothing of it to the PLC, also later.
    void ExpectDiscarded()
    {
        EXPECT_TRUE(WaitForEnd());
        EXPECT_EQ(Column(1)[0], "1");
        WaitThreeTicks();
        EXPECT_THAT(host.InWords(), testing::IsEmpty());
    }

    std::vector<std::pair<int, int>> SelectedRows() const
    {
        std::vector<std::pair<int, int>> rows;
        for (const wxGridBlockCoords& block : grid->GetSelectedBlocks()) {
            rows.emplace_back(block.GetTopRow(), block.GetBottomRow());
        }
        return rows;
    }

    std::string Status() const { return frame->GetStatusBar()->GetStatusText(0).ToStdString(); }

    wxWindow& Button(int id) const { return *panel->FindWindow(id); }

    static constexpr int defineButton = 10001;
    static constexpr int modifyButton = 10002;
    static constexpr int deleteButton = 10003;
};
