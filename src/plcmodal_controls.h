#pragma once

#include "plcintlang.h"

#include <wx/button.h>
#include <wx/textctrl.h>

// Controls of the debugger's dialogs, where those of the toolkit fall short. GUI thread.

/// @param id may be a standard one: the button shows the text all the same, where the toolkit would
///        show the word that the host's locale has for an equal or missing text.
/// @param style of its border.
wxButton* NewDialogButton(wxWindow* parent, int id, TextId text, long style = 0);

/// @return a field for one line, as high as its font needs, which sends an event at Enter. The
///         dialog opens with the keyboard in it and its text selected.
wxTextCtrl* NewTextField(wxWindow* parent, int id);
