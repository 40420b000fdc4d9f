#include "debuggerwindow.h"

#include "descendants.h"

#include <algorithm>

namespace {

/// @return true for the debugger's frame, false for those of a host, whose child it may be.
bool HoldsNotebook(const wxFrame& frame)
{
    const wxWindowList& children = frame.GetChildren();
    return std::any_of(children.begin(), children.end(), [](wxWindow* child) {
        return dynamic_cast<wxNotebook*>(child) != nullptr;
    });
}

} // namespace

wxFrame* Frame()
{
    for (wxWindow* window : wxTopLevelWindows) {
        auto* frame = dynamic_cast<wxFrame*>(window);
        if (frame != nullptr && HoldsNotebook(*frame) && !wxPendingDelete.Member(frame)) {
            return frame;
        }
    }
    return nullptr;
}

wxNotebook& Notebook()
{
    return *FirstOf<wxNotebook>(*Frame());
}

wxGrid& GridOn(Page page)
{
    return *FirstOf<wxGrid>(*Notebook().GetPage(page));
}

Words WatchList()
{
    wxGrid& grid = GridOn(watchPage);
    Words rows;
    for (int row = 0; row < grid.GetNumberRows(); ++row) {
        rows.push_back((grid.GetCellValue(row, 0) + "|" + grid.GetCellValue(row, 1) + "|" +
                        grid.GetCellValue(row, 2))
                           .utf8_string());
    }
    return rows;
}

std::vector<int> SelectedRows()
{
    wxGrid& grid = GridOn(watchPage);
    const wxGridCellCoordsArray tops = grid.GetSelectionBlockTopLeft();
    const wxGridCellCoordsArray bottoms = grid.GetSelectionBlockBottomRight();
    std::vector<int> rows;
    for (std::size_t block = 0; block < tops.size(); ++block) {
        for (int row = tops[block].GetRow(); row <= bottoms[block].GetRow(); ++row) {
            rows.push_back(row);
        }
    }
    return rows;
}
