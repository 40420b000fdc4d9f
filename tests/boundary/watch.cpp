#include "watch.h"

#include "complaints.h"
#include "dialogwords.h"

#include <wx/debug.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>

namespace {

std::mutex complaintsMutex; // complaints may come from any thread

std::vector<std::string>& Complaints()
{
    static std::vector<std::string> complaints;
    return complaints;
}

void Complain(const std::string& complaint)
{
    const std::lock_guard lock(complaintsMutex);
    Complaints().push_back(complaint);
}

void KeepAssert(
    const wxString& file,
    int line,
    const wxString& function,
    const wxString& condition,
    const wxString& message)
{
    Complain(wxString::Format("assert %s:%d %s: %s (%s)", file, line, function, condition, message)
                 .ToStdString());
}

/// @return true for what GTK writes of a window that is too small for what is in it.
bool IsOfSize(const std::string& complaint)
{
    const std::array words = {
        "gtk_distribute_natural_allocation",
        "gtk_box_gadget_distribute: assertion 'size >= 0'",
        "Negative content"};
    return std::any_of(words.begin(), words.end(), [&complaint](const char* part) {
        return complaint.find(part) != std::string::npos;
    });
}

GLogWriterOutput
KeepComplaint(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*unused*/)
{
    if (const std::string complaint = plccheck::ComplaintIn(level, fields, count);
        !complaint.empty()) {
        Complain(complaint);
    }
    return g_log_writer_default(level, fields, count, nullptr);
}

} // namespace

GtkDialog* DialogOver(GtkWidget* fileDialog)
{
    GtkDialog* over = nullptr;
    GList* windows = gtk_window_list_toplevels();
    for (GList* node = windows; node != nullptr; node = node->next) {
        auto* window = static_cast<GtkWindow*>(node->data);
        if (GTK_IS_DIALOG(window) &&
            GTK_WIDGET(gtk_window_get_transient_for(window)) == fileDialog &&
            gtk_widget_get_mapped(GTK_WIDGET(window)) != FALSE) {
            over = GTK_DIALOG(window);
        }
    }
    g_list_free(windows);
    return over;
}

void CancelDialog(wxDialog& dialog)
{
    GtkWidget* widget = dialog.GetHandle();
    if (GTK_IS_DIALOG(widget)) {
        GtkDialog* over = DialogOver(widget);
        gtk_dialog_response(over != nullptr ? over : GTK_DIALOG(widget), GTK_RESPONSE_CANCEL);
    } else if (dialog.IsModal()) {
        dialog.EndModal(wxID_CANCEL);
    }
}

Watch::Watch()
{
    static const bool once = [] {
        g_log_set_writer_func(KeepComplaint, nullptr, nullptr);
        wxSetAssertHandler(KeepAssert);
        return true;
    }();
    static_cast<void>(once);
    Register();
}

Watch::~Watch()
{
    Unregister();
}

Watch::Seen* Watch::InnermostSeen()
{
    const auto open = std::find_if(
        m_seen.rbegin(), m_seen.rend(), [](const Seen& seen) { return seen.dialog != nullptr; });
    return open != m_seen.rend() ? &*open : nullptr;
}

wxDialog* Watch::Innermost()
{
    const Seen* open = InnermostSeen();
    return open != nullptr ? open->dialog : nullptr;
}

std::string Watch::InnermostInWords()
{
    const Seen* open = InnermostSeen();
    return open != nullptr ? open->what : "";
}

bool Watch::Expect(const std::string& what)
{
    Seen* open = InnermostSeen();
    if (open == nullptr || open->what != what) {
        return false;
    }
    open->expected = true;
    return true;
}

void Watch::CancelAll()
{
    m_cancelAll = true;
    for (auto seen = m_seen.rbegin(); seen != m_seen.rend(); ++seen) {
        if (seen->dialog != nullptr) {
            CancelDialog(*seen->dialog);
        }
    }
}

std::vector<std::string> Watch::Troubles() const
{
    std::vector<std::string> troubles;
    for (const Seen& seen : m_seen) {
        if (!seen.expected) {
            troubles.push_back("unexpected " + seen.what);
        }
    }
    const std::lock_guard lock(complaintsMutex);
    std::copy_if(
        Complaints().begin(),
        Complaints().end(),
        std::back_inserter(troubles),
        [this](const std::string& complaint) { return !m_allowTooSmall || !IsOfSize(complaint); });
    return troubles;
}

int Watch::Enter(wxDialog* dialog)
{
    if (m_cancelAll) {
        return wxID_CANCEL;
    }
    // The toolkit announces a file dialog twice: as such and as a dialog.
    const bool announced = std::any_of(
        m_seen.begin(), m_seen.end(), [dialog](const Seen& seen) { return seen.dialog == dialog; });
    if (!announced) {
        m_seen.push_back({dialog, InWords(*dialog).utf8_string(), m_expectAll});
    }
    return wxID_NONE;
}

void Watch::Exit(wxDialog* dialog)
{
    for (Seen& seen : m_seen) {
        if (seen.dialog == dialog) {
            seen.dialog = nullptr;
        }
    }
}
