#include "expecteddialogs.h"

#include "waitfor.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

#include <memory>
#include <ostream>

namespace {

wxString Describe(wxDialog& dialog)
{
    if (auto* message = dynamic_cast<wxMessageDialog*>(&dialog)) {
        const bool question = (message->GetMessageDialogStyle() & wxYES_NO) != 0;
        return wxString(question ? "question" : "message") + " [" + message->GetCaption() + "] " +
               message->GetMessage();
    }
    if (auto* file = dynamic_cast<wxFileDialog*>(&dialog)) {
        return "file dialog [" + file->GetMessage() + "]";
    }
    return "dialog [" + dialog.GetTitle() + "]";
}

int aliveCount = 0;

/// What is to happen in a dialog once it is on the screen.
struct Operation
{
    wxWeakRef<wxDialog> dialog;
    std::function<void(wxDialog&)> operate;
};

/// Runs inside the dialog's own loop.
gboolean Operate(gpointer data)
{
    const std::unique_ptr<Operation> operation(static_cast<Operation*>(data));
    const wxWeakRef<wxDialog>& dialog = operation->dialog;
    const wxString what = Describe(*dialog);
    EXPECT_TRUE(WaitFor((what + " on the screen and active").ToStdString(), [&] {
        return !dialog || gtk_window_is_active(GTK_WINDOW(dialog->GetHandle())) != FALSE;
    }));
    if (dialog) {
        operation->operate(*dialog);
    }
    if (!WaitFor((what + " closed").ToStdString(), [&] { return !dialog || !dialog->IsModal(); })) {
        ADD_FAILURE() << what << " stayed open";
        dialog->EndModal(wxID_CANCEL);
    }
    return G_SOURCE_REMOVE;
}

/// The file chooser reads the directory by and by: waits until it has found the path.
void ChoosePath(wxFileDialog& dialog, const wxString& path)
{
    dialog.SetPath(path);
    EXPECT_TRUE(
        WaitFor(("chosen: " + path).ToStdString(), [&] { return dialog.GetPath() == path; }));
}

} // namespace

ExpectedDialogs::ExpectedDialogs()
{
    ++aliveCount;
    Register();
}

ExpectedDialogs::~ExpectedDialogs()
{
    --aliveCount;
    for (const Expectation& expectation : m_expected) {
        ADD_FAILURE() << "expected but not shown: " << expectation.what;
    }
}

void ExpectedDialogs::Message(const wxString& caption, const wxString& words)
{
    ExpectAnswered("message [" + caption + "] " + words, wxID_OK);
}

void ExpectedDialogs::Question(const wxString& caption, const wxString& words, int answer)
{
    ExpectAnswered("question [" + caption + "] " + words, answer);
}

void ExpectedDialogs::File(
    const wxString& message,
    const std::optional<wxString>& path,
    const std::function<void(wxFileDialog&)>& look)
{
    ExpectOpened("file dialog [" + message + "]", [path, look](wxDialog& dialog) {
        auto& fileDialog = static_cast<wxFileDialog&>(dialog);
        if (look) {
            look(fileDialog);
        }
        if (path) {
            ChoosePath(fileDialog, *path);
        }
        const int response = path ? GTK_RESPONSE_ACCEPT : GTK_RESPONSE_CANCEL;
        gtk_dialog_response(GTK_DIALOG(dialog.GetHandle()), response);
    });
}

void ExpectedDialogs::Dialog(const wxString& title, const std::function<void(wxDialog&)>& operate)
{
    ExpectOpened("dialog [" + title + "]", operate);
}

void ExpectedDialogs::ExpectAnswered(const wxString& what, int answer)
{
    m_expected.push_back({what, [what, answer](wxDialog& dialog) {
                              return Describe(dialog) == what ? std::optional<int>(answer)
                                                              : std::nullopt;
                          }});
}

void ExpectedDialogs::ExpectOpened(
    const wxString& what, const std::function<void(wxDialog&)>& operate)
{
    m_expected.push_back(
        {what, [what, operate](wxDialog& dialog) -> std::optional<int> {
             if (Describe(dialog) != what) {
                 return std::nullopt;
             }
             g_idle_add(
                 Operate, std::make_unique<Operation>(Operation{&dialog, operate}).release());
             return wxID_NONE;
         }});
}

int ExpectedDialogs::Enter(wxDialog* dialog)
{
    // A file dialog calls twice for one showing.
    if (m_open.count(dialog) != 0) {
        return wxID_NONE;
    }
    const std::optional<int> answer =
        m_expected.empty() ? std::nullopt : m_expected.front().meet(*dialog);
    if (!answer) {
        ADD_FAILURE() << "unexpected " << Describe(*dialog) << "; expected: "
                      << (m_expected.empty() ? wxString("none") : m_expected.front().what);
        return wxID_CANCEL;
    }
    m_expected.pop_front();
    if (*answer == wxID_NONE) {
        m_open.insert(dialog);
    }
    return *answer;
}

void ExpectedDialogs::Exit(wxDialog* dialog)
{
    m_open.erase(dialog);
}

bool ExpectedDialogs::Active()
{
    return aliveCount > 0;
}
