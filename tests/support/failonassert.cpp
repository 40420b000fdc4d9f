#include "failonassert.h"

#include <gtest/gtest.h>
#include <wx/debug.h>
#include <wx/string.h>

namespace {

void Fail(
    const wxString& file,
    int line,
    const wxString& function,
    const wxString& condition,
    const wxString& message)
{
    ADD_FAILURE() << "assert of the toolkit, " << file << ":" << line << " " << function << ": "
                  << condition << " (" << message << ")";
}

} // namespace

void FailOnAsserts()
{
    wxSetAssertHandler(Fail);
}
