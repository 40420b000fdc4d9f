#include "fuzz.h"
#include "ktcore/ktconfiguration.h"
#include "tempdir.h"

// A configuration file: what was set is there and the other keys stay; what was not set leaves the
// file as it was.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TempDir folder;
    const std::string before(Text(data, size));
    folder.Write("plcdebug.ini", before);
    KtConfiguration settings("Settings", "", folder.File("plcdebug.ini"));
    wxString language = "unchanged";
    const bool hasLanguage = settings.Get("Language", language);
    Require(hasLanguage || language == "unchanged", "a missing key leaves the value as it was");

    const wxString path = wxString::FromUTF8("/m\u00e4chine 1/%s\\last = list.txt ");
    if (settings.Set("PLCLastFile", path)) {
        wxString kept = "unchanged";
        Require(settings.Get("PLCLastFile", kept) && kept == path, "a value comes back as set");
        wxString after = "unchanged";
        Require(settings.Get("Language", after) == hasLanguage, "a key stays or stays away");
        Require(after == language, "the value of another key stays");
    } else {
        Require(folder.Read("plcdebug.ini") == before, "a file that takes no key stays as it was");
    }
    return 0;
}
