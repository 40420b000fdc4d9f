#include "plcnotebook.h"
#include "useractions.h"
#include "waitfor.h"

#include <gmock/gmock.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/sizer.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NoteBook : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new wxFrame(nullptr, wxID_ANY, "notebook", wxDefaultPosition, {400, 300});
        frame->CreateStatusBar(1);
        notebook = new PlcNoteBook(frame, frame);
        for (const char* name : {"first", "second"}) {
            AddPage(name);
        }
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        sizer->Add(notebook, 1, wxEXPAND);
        frame->SetSizer(sizer);
        ASSERT_TRUE(ShowActive(*frame));
        RunPending();
        told.clear();
    }

    void TearDown() override { delete frame; }

    void AddPage(const std::string& name)
    {
        auto* page = new wxPanel(notebook);
        page->Bind(wxEVT_SHOW, [this, name, page](wxShowEvent& event) {
            told.push_back(name + (event.IsShown() ? " shown" : " hidden"));
            EXPECT_EQ(page->IsShown(), event.IsShown());
            event.Skip();
        });
        notebook->AddPage(page, name, notebook->GetPageCount() == 0);
    }

    wxFrame* frame = nullptr;
    PlcNoteBook* notebook = nullptr;
    std::vector<std::string> told;
};

} // namespace

TEST_F(NoteBook, ClearsTheStatusLineWhenTheOperatorChangesThePage)
{
    frame->SetStatusText("a message of the first page", 0);

    ClickTab(*notebook, 1);

    EXPECT_TRUE(WaitFor("second page", [this] { return notebook->GetSelection() == 1; }));
    EXPECT_EQ(frame->GetStatusBar()->GetStatusText(0), "");
}

TEST_F(NoteBook, TellsThePagesThatTheyAreHiddenAndShown)
{
    ClickTab(*notebook, 1);
    ASSERT_TRUE(WaitFor("second page", [this] { return notebook->GetSelection() == 1; }));
    EXPECT_THAT(told, ElementsAre("first hidden", "second shown"));
    told.clear();

    notebook->SetSelection(0);

    EXPECT_THAT(told, ElementsAre("second hidden", "first shown"));
}

TEST_F(NoteBook, TellsNothingWhenTheShownPageIsChosenAgain)
{
    frame->SetStatusText("a message", 0);

    notebook->SetSelection(0);
    ClickTab(*notebook, 0);
    RunPending();

    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(frame->GetStatusBar()->GetStatusText(0), "a message");
}
