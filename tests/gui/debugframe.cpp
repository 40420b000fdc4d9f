#include "debugframe.h"

#include "debugfile.h"
#include "descendants.h"
#include "editortext.h"
#include "useractions.h"
#include "waitfor.h"

#include <fstream>

void DebugFrame::SetUp()
{
    WriteNumberedTexts(dir.Path());
    dir.Write("prog_plcdbgi.dat", DebugFile({{"OB 1", 0, ExecutableLines(3)}}));
}

void DebugFrame::TearDown()
{
    host.reaction = nullptr; // what it refers to went with the body of the test
    delete frame.get();
}

void DebugFrame::Configure(const std::string& lastFile) const
{
    dir.Write(
        "plcdebug.ini",
        "[Settings]\nLanguagePath=" + dir.Path().string() + "\nLanguage=" + numberedLanguage +
            "\n" + (lastFile.empty() ? "" : "PLCLastFile=" + lastFile + "\n"));
}

void DebugFrame::Open()
{
    frame = new PlcDebugFrame(nullptr, host.init);
    panel = FirstOf<PlcVarPanel>(*frame);
    grid = FirstOf<PlcVarGrid>(*frame);
    notebook = FirstOf<PlcNoteBook>(*frame);
    ASSERT_TRUE(panel != nullptr && grid != nullptr && notebook != nullptr);
    ASSERT_TRUE(BecomesActive(*frame, wxSize(600, 480)));
    RunPending();
}

void DebugFrame::OpenOn(const std::string& lines)
{
    Configure(dir.Write("last.plc", lines));
    Open();
    host.requests.clear();
}

void DebugFrame::Choose(int menuItem)
{
    frame->ProcessCommand(menuItem);
    RunPending();
}

void DebugFrame::ChangeList()
{
    grid->SelectBlock(0, 0, 0, varColumnCount - 1);
    wxCommandEvent remove;
    panel->OnButtonDelete(remove);
    ASSERT_TRUE(panel->IsModified());
    host.requests.clear();
}

void DebugFrame::TypeValue(int row, const char* text)
{
    grid->SetFocus();
    grid->SetGridCursor(row, varColumnValue);
    PressKey(WXK_F2);
    ASSERT_TRUE(WaitFor("editor", [this] { return grid->IsCellEditControlShown(); }));
    Type(text);
    ASSERT_TRUE(WaitFor("typed", [this, text] { return TextInEditor(*grid) == text; }));
}

void DebugFrame::Answer(std::uint16_t key, std::int32_t value)
{
    const CMD_DATA answer = PlcMakeReadAnswer(key, value);
    EXPECT_EQ(frame->ProcessAnswerReadVar(reinterpret_cast<const unsigned char*>(&answer)), 1);
}

std::vector<std::string> DebugFrame::Column(int column) const
{
    std::vector<std::string> cells;
    cells.reserve(static_cast<std::size_t>(grid->GetNumberRows()));
    for (int row = 0; row < grid->GetNumberRows(); ++row) {
        cells.push_back(grid->GetCellValue(row, column).ToStdString());
    }
    return cells;
}

std::string DebugFrame::LastFileInConfiguration() const
{
    const std::string key = "PLCLastFile=";
    std::ifstream file(dir.File("plcdebug.ini"));
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(key, 0) == 0) {
            return line.substr(key.size());
        }
    }
    return "";
}

void DebugFrame::Destroy()
{
    delete frame.get();
    panel = nullptr;
}
