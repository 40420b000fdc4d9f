#include "plcnotebook.h"

#include "plclist.h"

#include <algorithm>

wxBEGIN_EVENT_TABLE(PlcNoteBook, wxNotebook)
    EVT_NOTEBOOK_PAGE_CHANGED(wxID_ANY, PlcNoteBook::OnChangedPage)
    EVT_CHAR_HOOK(PlcNoteBook::OnKeyAnywhere)
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

void PlcNoteBook::FocusList()
{
    for (wxWindow* control : Controls()) {
        if (dynamic_cast<wxGrid*>(control) != nullptr) {
            control->SetFocus();
        }
    }
}

// A list of the toolkit keeps the keys that switch the pages and that move the keyboard on to the
// next control, and on the way out of one the keyboard would be nowhere for a while.

void PlcNoteBook::OnKeyAnywhere(wxKeyEvent& event)
{
    const int key = event.GetKeyCode();
    const bool isPageKey = key == WXK_PAGEUP || key == WXK_PAGEDOWN || key == WXK_NUMPAD_PAGEUP ||
                           key == WXK_NUMPAD_PAGEDOWN;
    if (isPageKey && event.GetModifiers() == wxMOD_CONTROL) {
        AdvanceSelection(key == WXK_PAGEDOWN || key == WXK_NUMPAD_PAGEDOWN);
        FocusList();
    } else if (key != WXK_TAB || event.AltDown() || !MoveKeyboard(!event.ShiftDown())) {
        event.Skip();
    }
}

/// Those that the keyboard can reach, in their order: the tabs, then what is on the shown page.
std::vector<wxWindow*> PlcNoteBook::Controls()
{
    std::vector<wxWindow*> controls{this};
    for (wxWindow* child : GetCurrentPage()->GetChildren()) {
        if (child->CanAcceptFocusFromKeyboard()) {
            controls.push_back(child);
        }
    }
    return controls;
}

/// @return false when the keyboard stays where it is.
bool PlcNoteBook::MoveKeyboard(bool forward)
{
    std::vector<wxWindow*> controls = Controls();
    if (!forward) {
        std::reverse(controls.begin(), controls.end());
    }
    wxWindow* focus = FindFocus();
    const auto from = std::find_if(controls.begin(), controls.end(), [=](wxWindow* control) {
        return control == focus || (control != this && control->IsDescendant(focus));
    });
    if (from == controls.end()) {
        return false;
    }
    if (auto* list = dynamic_cast<wxGrid*>(*from); list != nullptr && KeepsTab(*list, forward)) {
        return false;
    }
    const auto to = from + 1;
    (to == controls.end() ? controls.front() : *to)->SetFocus();
    return true;
}
