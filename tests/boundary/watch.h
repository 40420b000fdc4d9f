#pragma once

#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/modalhook.h>

#include <string>
#include <vector>

// What must not happen unasked while the debugger is open. GUI thread.

/// Sees every modal dialog of the process, in the plug-in as in the host, and what the toolkits
/// complain about.
class Watch : private wxModalDialogHook
{
public:
    Watch();
    ~Watch() override;
    Watch(const Watch&) = delete;
    Watch(Watch&&) = delete;
    Watch& operator=(const Watch&) = delete;
    Watch& operator=(Watch&&) = delete;

    /// @return the innermost open dialog; null when none is open.
    wxDialog* Innermost();

    /// @return the innermost open dialog as InWords() has it; empty when none is open.
    std::string InnermostInWords();

    /// Marks the innermost open dialog as expected when it reads @p what.
    /// @param what as InWords() has it.
    bool Expect(const std::string& what);

    /// From now on no dialog is unexpected.
    void ExpectAll() { m_expectAll = true; }

    /// From now on a window may be drawn too small for what is in it, of which GTK complains.
    void AllowTooSmallWindows() { m_allowTooSmall = true; }

    /// Cancels every dialog that is open, and from now on every dialog unseen.
    void CancelAll();

    /// @return unexpected dialogs, asserts of the toolkit and criticals since the start.
    std::vector<std::string> Troubles() const;

private:
    struct Seen
    {
        wxDialog* dialog; ///< Null once it is closed.
        std::string what;
        bool expected;
    };

    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

    /// @return null when no dialog is open.
    Seen* InnermostSeen();

    std::vector<Seen> m_seen;
    bool m_expectAll = false;
    bool m_allowTooSmall = false;
    bool m_cancelAll = false;
};

/// @return the dialog that a file dialog asks its own questions in; null when there is none.
GtkDialog* DialogOver(GtkWidget* fileDialog);

/// Ends an open dialog as cancelled, or the question that a file dialog is asking.
void CancelDialog(wxDialog& dialog);
