#include "expecteddialogs.h"

#include "waitfor.h"

#include <glib.h>
#include <gtest/gtest.h>
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
    EXPECT_TRUE(WaitFor((what + " on the screen").ToStdString(), [&] {
        return !dialog || dialog->IsShownOnScreen();
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
    const wxString what = "message [" + caption + "] " + words;
    m_expected.push_back({what, [what](wxDialog& dialog) {
                              return Describe(dialog) == what ? std::optional<int>(wxID_OK)
                                                              : std::nullopt;
                          }});
}

void ExpectedDialogs::Question(const wxString& caption, const wxString& words, int answer)
{
    const wxString what = "question [" + caption + "] " + words;
    m_expected.push_back({what, [what, answer](wxDialog& dialog) {
                              return Describe(dialog) == what ? std::optional<int>(answer)
                                                              : std::nullopt;
                          }});
}

void ExpectedDialogs::File(
    const wxString& message,
    const std::optional<wxString>& path,
    const std::function<void(wxDialog&)>& look)
{
    const wxString what = "file dialog [" + message + "]";
    m_expected.push_back({what, [what, path, look](wxDialog& dialog) -> std::optional<int> {
                              if (Describe(dialog) != what) {
                                  return std::nullopt;
                              }
                              if (look) {
                                  look(dialog);
                              }
                              if (!path) {
                                  return wxID_CANCEL;
                              }
                              static_cast<wxFileDialog&>(dialog).SetPath(*path);
                              return wxID_OK;
                          }});
}

void ExpectedDialogs::Dialog(const wxString& title, const std::function<void(wxDialog&)>& operate)
{
    const wxString what = "dialog [" + title + "]";
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
    if (!m_expected.empty()) {
        if (const std::optional<int> answer = m_expected.front().meet(*dialog)) {
            m_expected.pop_front();
            return *answer;
        }
    }
    ADD_FAILURE() << "unexpected " << Describe(*dialog) << "; expected: "
                  << (m_expected.empty() ? wxString("none") : m_expected.front().what);
    return wxID_CANCEL;
}

bool ExpectedDialogs::Active()
{
    return aliveCount > 0;
}
