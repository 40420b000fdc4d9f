#include "pages.h"

#include "descendants.h"
#include "gridinframe.h"
#include "plcvarpanel_file.h"
#include "waitfor.h"

#include <gtk/gtk.h>
#include <wx/combobox.h>
#include <wx/sizer.h>

namespace {

constexpr int frameWidth = 600;
constexpr int frameHeight = 480;
const char* const prefix = "machine";

std::string WriteDebugFile(const TempDir& dir, const std::vector<DebugFileBlock>& blocks)
{
    dir.Write(std::string(prefix) + "_plcdbgi.dat", DebugFile(blocks));
    return dir.File(prefix);
}

} // namespace

GridPicture PictureOf(const wxGrid& grid, int firstRow, int lastRow)
{
    GridPicture picture;
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = 0; column < grid.GetNumberCols(); ++column) {
            picture.cells.push_back(grid.GetCellValue(row, column).utf8_string());
        }
    }
    const wxPoint place = grid.CalcUnscrolledPosition(wxPoint(0, 0));
    picture.numbers = {
        grid.GetNumberRows(),
        grid.GetColSize(0),
        grid.GetColSize(1),
        grid.GetColSize(2),
        grid.GetGridCursorRow(),
        grid.GetGridCursorCol(),
        place.x,
        place.y};
    for (const wxGridBlockCoords& block : grid.GetSelectedBlocks()) {
        picture.numbers.push_back(block.GetTopRow());
        picture.numbers.push_back(block.GetBottomRow());
        picture.numbers.push_back(block.GetLeftCol());
        picture.numbers.push_back(block.GetRightCol());
    }
    return picture;
}

GridPicture PictureOf(const wxGrid& grid)
{
    return PictureOf(grid, 0, grid.GetNumberRows() - 1);
}

void FinishLayout(wxFrame& frame)
{
    constexpr int pictures = 3;
    int left = pictures;
    const auto countDown = [](GtkWidget* /*widget*/, GdkFrameClock* /*clock*/, gpointer count) {
        return --*static_cast<int*>(count) > 0 ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    gtk_widget_add_tick_callback(frame.GetHandle(), countDown, &left, nullptr);
    if (!WaitFor("pictures", [&left] { return left == 0; })) {
        std::abort();
    }
    RunPending();
}

PrgPages::PrgPages(const std::vector<DebugFileBlock>& blocks)
    : host(WriteDebugFile(dir, blocks)), frame(ShownFrame("program pages")),
      product(new PlcPrgPanel(frame, host.init)), reference(new literal::PrgPage(frame, host.init)),
      productGrid(FirstOf<PlcPrgGrid>(*product)), referenceGrid(reference->Grid())
{
    for (wxWindow* page : std::initializer_list<wxWindow*>{product, reference}) {
        page->SetAutoLayout(false); // the grids get the sizes that a test gives them
        page->SetSize(0, 0, frameWidth, frameHeight);
    }
    Resize({frameWidth, frameHeight});
    RunPending();
    host.requests.clear();
}

PrgPages::~PrgPages()
{
    delete frame;
}

void PrgPages::Resize(const wxSize& size) const
{
    productGrid->SetSize(size);
    referenceGrid->SetSize(size);
}

void PrgPages::ChooseOnProduct(int index) const
{
    auto* selector = FirstOf<wxComboBox>(*product);
    selector->SetSelection(index);
    wxCommandEvent chosen(wxEVT_COMBOBOX, selector->GetId());
    chosen.SetEventObject(selector);
    selector->ProcessWindowEvent(chosen);
}

VarPages::VarPages()
    : frame(ShownFrame("watch pages")), referenceStatus(new wxFrame(nullptr, wxID_ANY, "status")),
      product(new PlcVarPanel(frame, host.init, frame)),
      reference(new literal::VarPage(frame, host.init, referenceStatus)),
      productGrid(FirstOf<PlcVarGrid>(*product)), referenceGrid(reference->Grid())
{
    for (wxWindow* page : std::initializer_list<wxWindow*>{product, reference}) {
        page->SetAutoLayout(false);
        page->SetSize(0, 0, frameWidth, frameHeight);
    }
    referenceStatus->CreateStatusBar(1);
    Resize({frameWidth, frameHeight});
    RunPending();
}

VarPages::~VarPages()
{
    delete frame;
    delete referenceStatus;
}

void VarPages::LoadProduct(const std::vector<std::string>& lines) const
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    product->LoadFile(dir.Write("list.plc", text));
}

void VarPages::LoadReference(const std::vector<std::string>& lines) const
{
    std::vector<PlcDebugVar> vars;
    for (const std::string& line : lines) {
        if (std::optional<ListLine> parsed = ParseListLine(line)) {
            parsed->var.address = parsed->address;
            vars.push_back(parsed->var);
        }
    }
    reference->Load(vars);
}

void VarPages::Resize(const wxSize& size) const
{
    productGrid->SetSize(size);
    referenceGrid->SetSize(size);
}
