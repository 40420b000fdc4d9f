#include "gui_plcprgpage.h"

#include "descendants.h"
#include "records.h"
#include "useractions.h"
#include "waitfor.h"

#include <wx/sizer.h>

namespace {

const char* const debugFileName = "machine_plcdbgi.dat";

bool IsRowVisible(const wxGrid& grid, int row)
{
    return grid.IsVisible(row, 0, false) || grid.IsVisible(row, 1, false) ||
           grid.IsVisible(row, 2, false);
}

std::string RangeInWords(int first, int last)
{
    return "state " + std::to_string(first) + ".." + std::to_string(last) + " count " +
           std::to_string(last - first + 1);
}

} // namespace

DebugFileBlock Block(const std::string& name, std::uint16_t firstStep, int lineCount)
{
    return {name, firstStep, ExecutableLines(lineCount, name)};
}

Words Networks(int lineCount)
{
    Words lines;
    lines.reserve(static_cast<std::size_t>(lineCount));
    for (int i = 0; i < lineCount; ++i) {
        lines.push_back(
            i % 10 == 0 ? ":NETWORK " + std::to_string(i / 10) : ":U E " + std::to_string(i));
    }
    return lines;
}

PlcPrgPage::~PlcPrgPage()
{
    delete m_frame;
}

void PlcPrgPage::WriteFile(const std::vector<DebugFileBlock>& blocks)
{
    m_dir.Write(debugFileName, DebugFile(blocks));
}

void PlcPrgPage::Open()
{
    m_frame = new wxFrame(nullptr, wxID_ANY, "frame");
    m_frame->CreateStatusBar();
    m_notebook = new PlcNoteBook(m_frame, m_frame);
    m_notebook->AddPage(new wxPanel(m_notebook), "first", true);
    m_panel = new PlcPrgPanel(m_notebook, m_host.init);
    m_notebook->AddPage(m_panel, "second", false);
    m_grid = FirstOf<PlcPrgGrid>(*m_panel);
    m_combo = FirstOf<wxComboBox>(*m_panel);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_notebook, 1, wxEXPAND);
    m_frame->SetSizer(sizer);
    m_frame->Fit();
    m_frame->SetMaxSize(wxSize(wxDefaultCoord, 1942));
    m_frame->SetSize(wxDefaultCoord, wxDefaultCoord, 600, 480);
    ASSERT_TRUE(ShowActive(*m_frame));
    WaitThreeTicks(); // no further size comes from the window manager
}

Words PlcPrgPage::OpenOnPage(const std::vector<DebugFileBlock>& blocks)
{
    WriteFile(blocks);
    Open();
    TurnTo(1);
    return TakeRequests();
}

void PlcPrgPage::TurnTo(std::size_t page)
{
    m_notebook->SetSelection(page);
    RunPending();
}

void PlcPrgPage::Tick()
{
    if (m_panel->IsShown()) {
        m_panel->OnScrollSendRequest();
    }
}

void PlcPrgPage::ChooseBlock(int index)
{
    m_combo->SetSelection(index);
    wxCommandEvent chosen(wxEVT_COMBOBOX, m_combo->GetId());
    chosen.SetEventObject(m_combo);
    m_combo->ProcessWindowEvent(chosen);
}

void PlcPrgPage::AnswerSubscribed(int offset)
{
    TakeRequests();
    const std::int32_t first = PlcFirstStep(&m_lastRequest);
    const std::int32_t last = PlcLastStep(&m_lastRequest);
    std::vector<AnsweredStep> states;
    for (int step = first; step <= last; ++step) {
        states.push_back({1, step + offset});
    }
    m_panel->AnswerPrgState(PrgStateAnswerRecord(first, last, states));
}

Words PlcPrgPage::TakeRequests()
{
    if (!m_host.requests.empty()) {
        m_lastRequest = m_host.requests.back().record;
    }
    return m_host.TakeInWords();
}

void PlcPrgPage::ScrollToRow(int row)
{
    int unused = 0;
    int unitHeight = 0;
    m_grid->GetScrollPixelsPerUnit(&unused, &unitHeight);
    m_grid->Scroll(0, row * m_grid->GetDefaultRowSize() / unitHeight);
}

void PlcPrgPage::Resize(const wxSize& size)
{
    const wxSize before = m_grid->GetSize();
    m_frame->SetSize(size);
    EXPECT_TRUE(WaitFor("new size", [&] { return m_grid->GetSize() != before; }));
    RunPending();
}

std::string PlcPrgPage::VisibleRange(int firstStep) const
{
    int first = noStep;
    int last = noStep;
    int step = firstStep;
    for (int row = 0; row < m_grid->GetNumberRows(); ++row) {
        if (!IsExecutable(m_grid->GetCellValue(row, PrgColumnText).ToStdWstring())) {
            continue;
        }
        if (IsRowVisible(*m_grid, row)) {
            first = first == noStep ? step : first;
            last = step;
        } else if (first != noStep) {
            break;
        }
        ++step;
    }
    return first == noStep ? "none" : RangeInWords(first, std::min(last, first + 97));
}

std::string PlcPrgPage::Shown(int row) const
{
    return (m_grid->GetCellValue(row, PrgColumnState) + "/" +
            m_grid->GetCellValue(row, PrgColumnValue))
        .ToStdString();
}
