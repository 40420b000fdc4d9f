#include "plcnotebook.h"

wxBEGIN_EVENT_TABLE(PlcNoteBook, wxNotebook)
    EVT_NOTEBOOK_PAGE_CHANGED(wxID_ANY, PlcNoteBook::OnChangedPage)
wxEND_EVENT_TABLE()

PlcNoteBook::PlcNoteBook(wxWindow* parent, wxFrame* frame)
    : wxNotebook(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0), m_pFrame(frame)
{
}

void PlcNoteBook::OnChangedPage(wxNotebookEvent& event)
{
    m_pFrame->SetStatusText("", 0); // a message of one page must not stay under the other
    DeliverShowEvents(event.GetOldSelection(), event.GetSelection());
    event.Skip();
}

/// The toolkit's GTK port shows and hides pages on a switch without telling them, so they are told
/// here: first the page that went, then the one that came.
void PlcNoteBook::DeliverShowEvents(int hiddenPage, int shownPage)
{
    for (const int page : {hiddenPage, shownPage}) {
        if (page != wxNOT_FOUND) {
            wxWindow* window = GetPage(static_cast<std::size_t>(page));
            wxShowEvent show(window->GetId(), window->IsShown());
            show.SetEventObject(window);
            window->ProcessWindowEvent(show);
        }
    }
}
