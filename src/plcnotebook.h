#pragma once

#include <wx/frame.h>
#include <wx/notebook.h>

#include <vector>

/// The notebook with the debugger's two pages, on each of which there is a list. GUI thread.
class PlcNoteBook : public wxNotebook
{
public:
    /// @param frame whose status line is cleared when the page changes; not owned, outlives the
    ///        notebook.
    PlcNoteBook(wxWindow* parent, wxFrame* frame);

    /// Gives the keyboard to the list of the shown page.
    void FocusList();

private:
    void OnChangedPage(wxNotebookEvent& event);
    void OnKeyAnywhere(wxKeyEvent& event);
    void DeliverShowEvents(int hiddenPage, int shownPage);
    std::vector<wxWindow*> Controls();
    bool MoveKeyboard(bool forward);

    wxFrame* m_pFrame; // not owned, outlives the notebook

    wxDECLARE_EVENT_TABLE();
};
