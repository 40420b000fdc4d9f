#include "expecteddialogs.h"

#include "dialogwords.h"
#include "waitfor.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

#include <chrono>
#include <memory>
#include <optional>
#include <ostream>

namespace {

int aliveCount = 0;

/// What is to happen in a dialog once it is on the screen.
struct Operation
{
    wxDialog* dialog;
    std::function<void(wxDialog&)> operate;
};

bool IsActive(wxDialog& dialog)
{
    GtkWidget* window = dialog.GetHandle();
    return window != nullptr && gtk_window_is_active(GTK_WINDOW(window)) != FALSE;
}

/// Tells when a dialog has got its answer. Its window may live on until its loop has unwound.
class Ending
{
public:
    explicit Ending(wxDialog& dialog) : m_dialog(&dialog)
    {
        // A message box is no modal dialog to the toolkit.
        if (dynamic_cast<wxMessageDialog*>(&dialog) != nullptr) {
            m_box = dialog.GetHandle();
            m_handler = g_signal_connect(m_box, "response", G_CALLBACK(NoteResponse), this);
        }
    }

    ~Ending()
    {
        if (m_box != nullptr) {
            g_signal_handler_disconnect(m_box, m_handler);
        }
    }

    Ending(const Ending&) = delete;
    Ending(Ending&&) = delete;
    Ending& operator=(const Ending&) = delete;
    Ending& operator=(Ending&&) = delete;

    bool Ended() const
    {
        return m_answered || !m_dialog || (m_box == nullptr && !m_dialog->IsModal());
    }

private:
    static void NoteResponse(GtkDialog* /*unused*/, int /*unused*/, gpointer ending)
    {
        static_cast<Ending*>(ending)->m_answered = true;
    }

    wxWeakRef<wxDialog> m_dialog;
    GtkWidget* m_box = nullptr;
    gulong m_handler = 0;
    bool m_answered = false;
};

void Cancel(wxDialog& dialog)
{
    if (GTK_IS_DIALOG(dialog.GetHandle())) {
        gtk_dialog_response(GTK_DIALOG(dialog.GetHandle()), GTK_RESPONSE_CANCEL);
    } else {
        dialog.EndModal(wxID_CANCEL);
    }
}

/// Runs inside the dialog's own loop.
gboolean Operate(gpointer data)
{
    const std::unique_ptr<Operation> operation(static_cast<Operation*>(data));
    wxDialog& dialog = *operation->dialog;
    const wxString what = InWords(dialog);
    const Ending ending(dialog);
    EXPECT_TRUE(WaitFor((what + " on the screen and active").ToStdString(), [&] {
        return ending.Ended() || IsActive(dialog);
    }));
    if (!ending.Ended()) {
        operation->operate(dialog);
    }
    if (!WaitFor((what + " closed").ToStdString(), [&] { return ending.Ended(); })) {
        ADD_FAILURE() << what << " stayed open";
        Cancel(dialog);
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

/// Chooses the path and presses the button; again when the press has come to nothing for long,
/// since a file chooser that still reads its directory may drop one.
void AcceptPath(wxFileDialog& dialog, const wxString& path)
{
    using Clock = std::chrono::steady_clock;
    constexpr auto patience = waitLimit / 6;
    const wxWeakRef<wxDialog> open(&dialog);
    std::optional<Clock::time_point> pressed;
    EXPECT_TRUE(WaitFor(("taken: " + path).ToStdString(), [&] {
        if (!open || !open->IsModal()) {
            return true;
        }
        // Under the question whether to overwrite it is not active.
        if ((!pressed || Clock::now() - *pressed > patience) && IsActive(dialog)) {
            ChoosePath(dialog, path);
            gtk_dialog_response(GTK_DIALOG(dialog.GetHandle()), GTK_RESPONSE_ACCEPT);
            pressed = Clock::now();
        }
        return false;
    }));
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
    ExpectAnswered(BoxInWords("message", caption, words), wxID_OK);
}

void ExpectedDialogs::Question(const wxString& caption, const wxString& words, int answer)
{
    ExpectAnswered(BoxInWords("question", caption, words), answer);
}

void ExpectedDialogs::OpenedMessage(
    const wxString& caption, const wxString& words, const std::function<void(wxDialog&)>& operate)
{
    ExpectOpened(BoxInWords("message", caption, words), operate);
}

void ExpectedDialogs::OpenedQuestion(
    const wxString& caption, const wxString& words, const std::function<void(wxDialog&)>& operate)
{
    ExpectOpened(BoxInWords("question", caption, words), operate);
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
            AcceptPath(fileDialog, *path);
        } else {
            Cancel(dialog);
        }
    });
}

void ExpectedDialogs::Dialog(const wxString& title, const std::function<void(wxDialog&)>& operate)
{
    ExpectOpened("dialog [" + title + "]", operate);
}

void ExpectedDialogs::ExpectAnswered(const wxString& what, int answer)
{
    m_expected.push_back({what, [what, answer](wxDialog& dialog) {
                              return InWords(dialog) == what ? std::optional<int>(answer)
                                                             : std::nullopt;
                          }});
}

void ExpectedDialogs::ExpectOpened(
    const wxString& what, const std::function<void(wxDialog&)>& operate)
{
    m_expected.push_back(
        {what, [what, operate](wxDialog& dialog) -> std::optional<int> {
             if (InWords(dialog) != what) {
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
        ADD_FAILURE() << "unexpected " << InWords(*dialog) << "; expected: "
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
