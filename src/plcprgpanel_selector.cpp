#include "plcprgpanel_selector.h"

namespace {

/// @return the letter or digit that a key stands for, 0 when it stands for none.
wchar_t LetterOf(guint key, bool withModifier)
{
    const guint32 letter = gdk_keyval_to_unicode(key);
    return !withModifier && g_unichar_isalnum(letter) != FALSE ? static_cast<wchar_t>(letter) : 0;
}

} // namespace

wxBEGIN_EVENT_TABLE(BlockSelector, wxComboBox)
    EVT_LEFT_DOWN(BlockSelector::OnClick)
    EVT_COMBOBOX_DROPDOWN(wxID_ANY, BlockSelector::OnListOpened)
    EVT_KEY_DOWN(BlockSelector::OnKey)
    EVT_TIMER(wxID_ANY, BlockSelector::OnTypingPause)
    EVT_COMBOBOX(wxID_ANY, BlockSelector::OnChosen)
wxEND_EVENT_TABLE()

BlockSelector::BlockSelector(wxWindow* parent, wxWindowID id, const wxArrayString& names)
    : wxComboBox(
          parent,
          id,
          wxEmptyString,
          wxDefaultPosition,
          wxDefaultSize,
          names,
          wxCB_DROPDOWN | wxCB_READONLY),
      m_typingPause(this)
{
    for (const wxString& name : names) {
        m_names.push_back(name.ToStdWstring());
    }
    // The toolkit tells of no choice that leaves the selection as it is; GTK's list does.
    g_signal_connect(List(), "menu-activate", G_CALLBACK(&BlockSelector::OnChosenInList), this);
    // The combo box of GTK takes each key-press-event of its list for itself.
    g_signal_connect(List(), "event", G_CALLBACK(&BlockSelector::OnEventInList), this);
}

GtkWidget* BlockSelector::List() const
{
    AtkObject* list = gtk_combo_box_get_popup_accessible(GTK_COMBO_BOX(GetHandle()));
    return gtk_accessible_get_widget(GTK_ACCESSIBLE(list));
}

void BlockSelector::OnChosenInList(GtkWidget* /*list*/, const char* /*path*/, gpointer selector)
{
    auto* self = static_cast<BlockSelector*>(selector);
    if (self->GetSelection() == self->m_atOpening) {
        self->SendChosen();
    }
}

gboolean BlockSelector::OnEventInList(GtkWidget* /*list*/, GdkEvent* event, gpointer selector)
{
    if (event->type != GDK_KEY_PRESS) {
        return FALSE;
    }
    const GdkEventKey& key = event->key;
    const bool withModifier = (key.state & (GDK_CONTROL_MASK | GDK_MOD1_MASK)) != 0;
    const wchar_t letter = LetterOf(key.keyval, withModifier);
    if (letter == 0) {
        return FALSE;
    }
    auto* self = static_cast<BlockSelector*>(selector);
    self->Dismiss();
    self->Type(letter, key.time);
    return TRUE;
}

void BlockSelector::OnClick(wxMouseEvent& /*event*/)
{
    SetFocus();
    Popup();
}

void BlockSelector::OnListOpened(wxCommandEvent& event)
{
    m_atOpening = GetSelection();
    event.Skip();
}

void BlockSelector::OnKey(wxKeyEvent& event)
{
    const int code = event.GetKeyCode();
    const bool withModifier = event.ControlDown() || event.AltDown();
    if (const wchar_t letter = LetterOf(event.GetRawKeyCode(), withModifier); letter != 0) {
        Type(letter, static_cast<std::uint32_t>(event.GetTimestamp()));
    } else if ((code == WXK_RETURN || code == WXK_NUMPAD_ENTER) && m_typingPause.IsRunning()) {
        SendChosen();
    } else {
        event.Skip();
    }
}

void BlockSelector::Type(wchar_t letter, std::uint32_t timeMs)
{
    const auto block = m_typed.Add(letter, timeMs, m_names, GetSelection());
    if (block) {
        SetSelection(static_cast<int>(*block));
    }
    if (block || m_typingPause.IsRunning()) {
        m_typingPause.StartOnce(typingPauseMs);
    }
}

void BlockSelector::OnTypingPause(wxTimerEvent& /*event*/)
{
    SendChosen();
}

void BlockSelector::OnChosen(wxCommandEvent& event)
{
    m_typingPause.Stop();
    event.Skip();
}

void BlockSelector::SendChosen()
{
    SendSelectionChangedEvent(wxEVT_COMBOBOX);
}
