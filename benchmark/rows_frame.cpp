#include "plcdebug.h"
#include "plcdebug_host.h"
#include "plcprgpanel_file.h"
#include "recordinghost.h"
#include "tempdir.h"
#include "waitfor.h"
#include "windowrows.h"

#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/combobox.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/notebook.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

// The whole frame.

namespace bench {

namespace {

/// The widgets of the debugger's frame, laid out as there, without its logic.
wxFrame* WidgetsAlone()
{
    auto* frame = new wxFrame(nullptr, wxID_ANY, "widgets");
    frame->CreateStatusBar(1);
    auto* file = new wxMenu;
    for (const int id : {wxID_NEW, wxID_OPEN, wxID_CLOSE, wxID_SAVE, wxID_SAVEAS, wxID_EXIT}) {
        file->Append(id);
    }
    auto* help = new wxMenu;
    help->Append(wxID_HELP);
    auto* bar = new wxMenuBar;
    bar->Append(file, "File");
    bar->Append(help, "Help");
    frame->SetMenuBar(bar);

    auto* notebook = new wxNotebook(frame, wxID_ANY);
    const auto grid = [](wxWindow* page) {
        auto* created = new wxGrid(page, wxID_ANY);
        created->CreateGrid(0, 3);
        created->SetRowLabelSize(0);
        return created;
    };
    auto* watch = new wxPanel(notebook);
    wxGrid* watchGrid = grid(watch);
    watchGrid->AutoSize();
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    for (const char* label : {"Define", "Modify", "Delete"}) {
        auto* button = new wxButton(watch, wxID_ANY, label);
        button->SetToolTip(label);
        buttons->Add(button);
    }
    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(watchGrid, 1, wxEXPAND);
    columns->Add(buttons);
    watch->SetSizer(columns);
    columns->Fit(watch);
    notebook->AddPage(watch, "Variables", true);

    auto* program = new wxPanel(notebook);
    auto* rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(new wxStaticText(program, wxID_ANY, "Block"));
    wxArrayString names;
    names.push_back("OB1");
    auto* blocks = new wxComboBox(
        program, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, names, wxCB_READONLY);
    blocks->SetSelection(0);
    rows->Add(blocks, 0, wxEXPAND);
    rows->Add(grid(program), 1, wxEXPAND);
    program->SetSizer(rows);
    rows->Fit(program);
    notebook->AddPage(program, "Program", false);

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(notebook, 1, wxEXPAND);
    frame->SetSizer(sizer);
    frame->Fit();
    frame->SetSize(600, 480);
    // As there, where GTK would else complain of a window of 2 by 1 pixels.
    GtkAllocation place = {0, 0, 600, 480};
    gtk_widget_size_allocate(frame->GetHandle(), &place);
    frame->Show();
    return frame;
}

/// A host's settings directory with a program debug file.
struct HostFiles
{
    explicit HostFiles(int lineCount)
    {
        dir.Write("prog_plcdbgi.dat", DebugFile({Block(lineCount)}));
    }

    TempDir dir;
    RecordingHost host{dir.File("prog")};
};

void IdleRow()
{
    constexpr int pairs = 5;
    constexpr unsigned seconds = 8;
    HostFiles files(fewLines);
    std::vector<double> product;
    std::vector<double> reference;
    for (int i = 0; i < pairs; ++i) {
        ExportCreatePlcDebugger(&files.host.init);
        WaitThreeTicks();
        product.push_back(CpuOfLoop(seconds));
        ExportDestroyPlcDebugger();
        wxFrame* widgets = WidgetsAlone();
        WaitThreeTicks();
        {
            Ticker ticker(tickMs, [] {});
            reference.push_back(CpuOfLoop(seconds));
        }
        delete widgets;
        RunPending();
    }
    PrintRow("idle, shown: processor", "widgets and empty timer", product, reference, 1.15);
}

void CreateRow(int lineCount)
{
    constexpr int pairs = 41;
    HostFiles files(lineCount);
    const PrgFile file = OpenPrgFile(files.dir.File("prog_plcdbgi.dat"));
    const DBG_BAUSTEIN_ENTRY block = ReadBlockIndex(file.get()).at(0);
    std::vector<double> ratios; // of neighbours, which share what speed the machine has just then
    for (int i = 0; i < pairs; ++i) {
        const double reading = CpuOf([&] { ReadBlockLines(file.get(), block); });
        const double product = CpuOf([&] { ExportCreatePlcDebugger(&files.host.init); }) - reading;
        RunPending();
        ExportDestroyPlcDebugger();
        RunPending();
        wxFrame* widgets = nullptr;
        ratios.push_back(product / CpuOf([&] { widgets = WidgetsAlone(); }));
        RunPending();
        delete widgets;
        RunPending();
    }
    PrintRow(
        "create to shown, lines in the first block: " + std::to_string(lineCount),
        "widgets alone",
        Median(ratios),
        1.3);
}

} // namespace

std::vector<Row> FrameRows()
{
    return {{"idle", IdleRow}, {"create-100", [] { CreateRow(fewLines); }}, {"create-65535", [] {
                                                                                 CreateRow(
                                                                                     manyLines);
                                                                             }}};
}

} // namespace bench
