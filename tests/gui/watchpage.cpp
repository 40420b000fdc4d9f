#include "watchpage.h"

#include "descendants.h"
#include "editortext.h"
#include "useractions.h"
#include "waitfor.h"

#include <wx/sizer.h>
#include <wx/textctrl.h>

namespace {

constexpr int idDefine = 10001;
constexpr int idModify = 10002;
constexpr int idDelete = 10003;
constexpr int idAddress = 10009;
constexpr int frameWidth = 600;
constexpr int frameHeight = 480;

} // namespace

void WatchPage::SetUp()
{
    frame = new wxFrame(
        nullptr, wxID_ANY, "watch page", wxDefaultPosition, wxSize(frameWidth, frameHeight));
    frame->CreateStatusBar(1);
    panel = new PlcVarPanel(frame, host.init, frame);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(panel, 1, wxEXPAND);
    frame->SetSizer(sizer);
    frame->Layout();
    grid = FirstOf<PlcVarGrid>(*panel);
    define = dynamic_cast<wxButton*>(panel->FindWindow(idDefine));
    modify = dynamic_cast<wxButton*>(panel->FindWindow(idModify));
    remove = dynamic_cast<wxButton*>(panel->FindWindow(idDelete));
    ASSERT_TRUE(grid != nullptr && define != nullptr && modify != nullptr && remove != nullptr);
    ASSERT_TRUE(ShowActive(*frame));
    RunPending();
}

void WatchPage::TearDown()
{
    host.reaction = nullptr; // what it refers to went with the body of the test
    delete frame;
}

void WatchPage::Load(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    ASSERT_TRUE(panel->LoadFile(dir.Write("list.plc", text)));
    ASSERT_EQ(grid->GetNumberRows(), static_cast<int>(lines.size()));
    host.requests.clear();
    RunPending();
}

void WatchPage::ExpectSettings(const char* title, const std::function<void(wxDialog&)>& operate)
{
    dialogs.Dialog(title, [operate](wxDialog& dialog) {
        operate(dialog);
        Click(*dialog.FindWindow(wxID_OK));
    });
}

void WatchPage::ExpectAddress(const char* title, const char* address)
{
    ExpectSettings(title, [address](wxDialog& dialog) {
        auto* field = dynamic_cast<wxTextCtrl*>(dialog.FindWindow(idAddress));
        field->Clear();
        ASSERT_TRUE(Focus(*field));
        Type(address);
        ASSERT_TRUE(WaitFor("address typed", [&] { return field->GetValue() == address; }));
    });
}

void WatchPage::ClickAndWait(wxButton& button, const std::function<bool()>& done)
{
    Click(button);
    ASSERT_TRUE(WaitFor("button " + button.GetLabel().ToStdString(), done));
    RunPending();
}

void WatchPage::ClickRefused(wxButton& button, const char* message)
{
    dialogs.Message("T85", message);
    ClickAndWait(button, [this] { return dialogs.AllShown(); });
}

void WatchPage::OpenEditor(int row)
{
    GoTo(row, varColumnValue);
    PressKey(WXK_F2);
    ASSERT_TRUE(WaitFor("cell editor", [this] { return grid->IsCellEditControlShown(); }));
}

void WatchPage::Answer(std::uint16_t key, std::int32_t value)
{
    panel->AnswerReadVarRequest(PlcMakeReadAnswer(key, value));
}

std::string WatchPage::Cell(int row, int column) const
{
    return grid->GetCellValue(row, column).ToStdString();
}

std::vector<std::string> WatchPage::Column(int column) const
{
    std::vector<std::string> cells;
    cells.reserve(static_cast<std::size_t>(grid->GetNumberRows()));
    for (int row = 0; row < grid->GetNumberRows(); ++row) {
        cells.push_back(Cell(row, column));
    }
    return cells;
}

std::string WatchPage::EditorText() const
{
    return TextInEditor(*grid);
}

std::string WatchPage::Status() const
{
    return frame->GetStatusBar()->GetStatusText(0).ToStdString();
}

WatchPage::Rows WatchPage::Selected() const
{
    Rows rows;
    for (const wxGridBlockCoords& block : grid->GetSelectedBlocks()) {
        rows.emplace_back(block.GetTopRow(), block.GetBottomRow());
    }
    return rows;
}

void WatchPage::Select(const Rows& blocks)
{
    grid->ClearSelection();
    for (const auto& [first, last] : blocks) {
        grid->SelectBlock(first, 0, last, varColumnCount - 1, true);
    }
}

bool WatchPage::GridHasKeyboard() const
{
    wxWindow* focus = wxWindow::FindFocus();
    return focus != nullptr && grid->IsDescendant(focus);
}

void WatchPage::GoTo(int row, int column)
{
    grid->SetFocus();
    ASSERT_TRUE(WaitFor("grid focused", [this] { return GridHasKeyboard(); }));
    grid->SetGridCursor(row, column);
}
