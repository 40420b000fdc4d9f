#pragma once

#include "plcprgpanel_typing.h"

#include <gtk/gtk.h>
#include <wx/combobox.h>
#include <wx/timer.h>

#include <string>
#include <vector>

/// The selector of the block on show. A click on its field opens the list, also the block that is
/// selected already can be chosen, and what is typed selects the block whose name begins so. It
/// sends wxEVT_COMBOBOX once for each choice; for what is typed when the typing pauses or Return
/// comes. GUI thread.
class BlockSelector : public wxComboBox
{
public:
    BlockSelector(wxWindow* parent, wxWindowID id, const wxArrayString& names);

private:
    static void OnChosenInList(GtkWidget* list, const char* path, gpointer selector);
    static gboolean OnEventInList(GtkWidget* list, GdkEvent* event, gpointer selector);

    void OnClick(wxMouseEvent& event);
    void OnListOpened(wxCommandEvent& event);
    void OnKey(wxKeyEvent& event);
    void OnTypingPause(wxTimerEvent& event);
    void OnChosen(wxCommandEvent& event);

    void Type(wchar_t letter, std::uint32_t timeMs);
    void SendChosen();
    GtkWidget* List() const;

    std::vector<std::wstring> m_names;
    TypedName m_typed;
    wxTimer m_typingPause;         ///< Runs while a typed name is selected and not yet chosen.
    int m_atOpening = wxNOT_FOUND; ///< What was selected when the list was opened.

    wxDECLARE_EVENT_TABLE();
};
