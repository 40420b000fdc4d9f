#include "dialogwords.h"

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

wxString InWords(wxDialog& dialog)
{
    if (auto* message = dynamic_cast<wxMessageDialog*>(&dialog)) {
        const bool question = (message->GetMessageDialogStyle() & wxYES_NO) != 0;
        return BoxInWords(
            question ? "question" : "message", message->GetCaption(), message->GetMessage());
    }
    if (auto* file = dynamic_cast<wxFileDialog*>(&dialog)) {
        return "file dialog [" + file->GetMessage() + "]";
    }
    return "dialog [" + dialog.GetTitle() + "]";
}

wxString BoxInWords(const char* kind, const wxString& caption, const wxString& words)
{
    return wxString(kind) + " [" + caption + "] " + words;
}
