#pragma once

#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/modalhook.h>
#include <wx/string.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <set>

// The dialogs that a test expects, in order, and what the operator does with each. GUI thread.

/// While one is alive, every modal dialog must be the next expected one; any other fails the test
/// and is cancelled at once. A dialog that was expected and never came fails the test too.
class ExpectedDialogs : private wxModalDialogHook
{
public:
    ExpectedDialogs();
    ~ExpectedDialogs() override;
    ExpectedDialogs(const ExpectedDialogs&) = delete;
    ExpectedDialogs(ExpectedDialogs&&) = delete;
    ExpectedDialogs& operator=(const ExpectedDialogs&) = delete;
    ExpectedDialogs& operator=(ExpectedDialogs&&) = delete;

    /// Expects a message box with an OK button only, and answers it unseen.
    void Message(const wxString& caption, const wxString& words);

    /// Expects a question with Yes and No, and answers it unseen.
    /// @param answer wxID_YES, wxID_NO, or wxID_CANCEL for closing it.
    void Question(const wxString& caption, const wxString& words, int answer);

    /// The same, but the box really opens and is ended as Dialog() says.
    void OpenedMessage(
        const wxString& caption,
        const wxString& words,
        const std::function<void(wxDialog&)>& operate);
    void OpenedQuestion(
        const wxString& caption,
        const wxString& words,
        const std::function<void(wxDialog&)>& operate);

    /// Expects a file dialog, which really opens.
    /// @param path the file chosen there; nothing cancels.
    /// @param look sees the dialog before, for its directory, wildcard and style.
    void File(
        const wxString& message,
        const std::optional<wxString>& path,
        const std::function<void(wxFileDialog&)>& look = nullptr);

    /// Expects a dialog with this title, which really opens.
    /// @param operate runs once it is on the screen and must lead to its end; a dialog still open
    ///        afterwards fails the test and is cancelled.
    void Dialog(const wxString& title, const std::function<void(wxDialog&)>& operate);

    /// @return how many expected dialogs are still to come.
    std::size_t Outstanding() const { return m_expected.size(); }

    /// @return true when none is.
    bool AllShown() const { return m_expected.empty(); }

    /// @return true while one is alive.
    static bool Active();

private:
    struct Expectation
    {
        wxString what;
        /// @return the answer given unseen, wxID_NONE to open the dialog, nothing when it is
        ///         another dialog than this one.
        std::function<std::optional<int>(wxDialog&)> meet;
    };

    void ExpectAnswered(const wxString& what, int answer);
    void ExpectOpened(const wxString& what, const std::function<void(wxDialog&)>& operate);
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

    std::deque<Expectation> m_expected;
    std::set<const wxDialog*> m_open;
};
