#include "gridinframe.h"

#include "waitfor.h"

#include <cstdlib>

wxFrame* ShownFrame(const wxString& title)
{
    constexpr int width = 600;
    constexpr int height = 480;
    auto* frame = new wxFrame(nullptr, wxID_ANY, title, wxDefaultPosition, wxSize(width, height));
    frame->CreateStatusBar(1);
    frame->Show();
    if (!WaitFor("window", [frame] { return frame->IsShownOnScreen(); })) {
        std::abort();
    }
    WaitThreeTicks(); // no further size comes from the window manager
    return frame;
}

void ScrollToRow(wxGrid& grid, int row)
{
    int unused = 0;
    int unitHeight = 0;
    grid.GetScrollPixelsPerUnit(&unused, &unitHeight);
    grid.Scroll(0, row * grid.GetDefaultRowSize() / unitHeight);
}

void SendSize(wxGrid& grid)
{
    wxSizeEvent size(grid.GetSize(), grid.GetId());
    size.SetEventObject(&grid);
    grid.ProcessWindowEvent(size);
}
