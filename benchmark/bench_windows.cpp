#include "windowrows.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/debug.h>
#include <wx/init.h>

#include <cstdio>
#include <cstdlib>

// The rows that need windows.

namespace {

void EndAtAssert(
    const wxString& file,
    int line,
    const wxString& /*function*/,
    const wxString& condition,
    const wxString& message)
{
    std::fprintf(
        stderr,
        "%s:%d: %s %s\n",
        file.utf8_str().data(),
        line,
        condition.utf8_str().data(),
        message.utf8_str().data());
    std::abort();
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    int noArguments = 0;
    wxSetAssertHandler(EndAtAssert);
    if (!wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) {
        return EXIT_FAILURE;
    }
    std::vector<bench::Row> rows;
    for (const auto& part :
         {bench::WatchRows(), bench::ProgramRows(), bench::FrameRows(), bench::FloodRows()}) {
        rows.insert(rows.end(), part.begin(), part.end());
    }
    const int status = bench::RunRows(rows, argc, argv);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return status;
}
