#pragma once

#include <wx/frame.h>
#include <wx/notebook.h>

/// The notebook with the debugger's two pages. GUI thread.
class PlcNoteBook : public wxNotebook
{
public:
    /// @param frame whose status line is cleared when the page changes; not owned, outlives the
    ///        notebook.
    PlcNoteBook(wxWindow* parent, wxFrame* frame);

private:
    void OnChangedPage(wxNotebookEvent& event);
    void DeliverShowEvents(int hiddenPage, int shownPage);

    wxFrame* m_pFrame; // not owned, outlives the notebook

    wxDECLARE_EVENT_TABLE();
};
