#include "expecteddialogs.h"
#include "failonassert.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/init.h>

#include <algorithm>
#include <array>
#include <cstring>

// The main function of test programs with windows in their own process: a plain GTK program that
// starts the toolkit as the plug-in does. What the toolkit complains about fails the running test.

namespace {

/// The toolkit's own, at the first layout of a notebook inside a frame.
constexpr std::array<const char*, 2> knownCriticals = {
    "gtk_distribute_natural_allocation: assertion 'extra_space >= 0' failed",
    "gtk_box_gadget_distribute: assertion 'size >= 0' failed in GtkNotebook"};

const char* MessageOf(const GLogField* fields, gsize count)
{
    const auto* end = fields + count;
    const auto* message = std::find_if(
        fields, end, [](const GLogField& field) { return std::strcmp(field.key, "MESSAGE") == 0; });
    return message != end ? static_cast<const char*>(message->value) : "";
}

GLogWriterOutput
FailOnCritical(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*unused*/)
{
    const char* message = MessageOf(fields, count);
    const bool known =
        std::any_of(knownCriticals.begin(), knownCriticals.end(), [message](const char* words) {
            return std::strstr(message, words) != nullptr;
        });
    if ((level & G_LOG_LEVEL_CRITICAL) != 0 && !known) {
        ADD_FAILURE() << "critical of the toolkit: " << message;
    }
    return g_log_writer_default(level, fields, count, nullptr);
}

/// Cancels every dialog of a test that expects none.
class NoDialogs : private wxModalDialogHook
{
public:
    NoDialogs() { Register(); }

private:
    int Enter(wxDialog* dialog) override
    {
        if (ExpectedDialogs::Active()) {
            return wxID_NONE;
        }
        ADD_FAILURE() << "unexpected dialog [" << dialog->GetTitle() << "]";
        return wxID_CANCEL;
    }
};

bool StartToolkit()
{
    static int noArguments = 0;
    FailOnAsserts();
    return wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) && wxTheApp->CallOnInit();
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    gtk_init(&argc, &argv);
    g_log_set_writer_func(FailOnCritical, nullptr, nullptr);
    if (!StartToolkit()) {
        return EXIT_FAILURE;
    }
    const NoDialogs noDialogs;
    const int result = RUN_ALL_TESTS();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}
