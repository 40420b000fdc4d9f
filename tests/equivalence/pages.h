#pragma once

#include "debugfile.h"
#include "literal_prgpage.h"
#include "literal_varpage.h"
#include "plcprggrid.h"
#include "plcprgpanel.h"
#include "plcvargrid.h"
#include "plcvarpanel.h"
#include "recordinghost.h"
#include "tempdir.h"

#include <wx/frame.h>

#include <string>
#include <vector>

// The pages of the product and the same taken literally, each pair in one frame on the screen, so
// that both are laid out at the same time, and behind one host. GUI thread.

/// All that an operator can see of a grid: cells, widths, selection, cursor, place.
struct GridPicture
{
    std::vector<std::string> cells;
    std::vector<int> numbers;

    bool operator==(const GridPicture& other) const
    {
        return cells == other.cells && numbers == other.numbers;
    }
};

/// @param firstRow to @p lastRow of which the cells are taken.
GridPicture PictureOf(const wxGrid& grid, int firstRow, int lastRow);

/// With all rows.
GridPicture PictureOf(const wxGrid& grid);

/// Lets the toolkit finish laying out a frame: scroll bars come and go a picture later than the
/// size that makes them do so, and that may be earlier on one page than on the other.
void FinishLayout(wxFrame& frame);

/// Both program pages on one program debug file.
struct PrgPages
{
    explicit PrgPages(const std::vector<DebugFileBlock>& blocks);
    ~PrgPages();
    PrgPages(const PrgPages&) = delete;
    PrgPages(PrgPages&&) = delete;
    PrgPages& operator=(const PrgPages&) = delete;
    PrgPages& operator=(PrgPages&&) = delete;

    /// Gives the grids a size.
    void Resize(const wxSize& size) const;

    /// Has the operator choose a block on the product's page.
    void ChooseOnProduct(int index) const;

    TempDir dir;
    RecordingHost host;
    wxFrame* frame;
    PlcPrgPanel* product;
    literal::PrgPage* reference;
    PlcPrgGrid* productGrid;
    literal::PrgGrid* referenceGrid;
};

/// Both watch pages.
struct VarPages
{
    VarPages();
    ~VarPages();
    VarPages(const VarPages&) = delete;
    VarPages(VarPages&&) = delete;
    VarPages& operator=(const VarPages&) = delete;
    VarPages& operator=(VarPages&&) = delete;

    void LoadProduct(const std::vector<std::string>& lines) const;
    void LoadReference(const std::vector<std::string>& lines) const;

    /// Gives the grids a size.
    void Resize(const wxSize& size) const;

    TempDir dir;
    RecordingHost host;
    wxFrame* frame;
    wxFrame* referenceStatus; ///< Never shown, only for its status line.
    PlcVarPanel* product;
    literal::VarPage* reference;
    PlcVarGrid* productGrid;
    literal::VarGrid* referenceGrid;
};
