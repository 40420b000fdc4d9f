#include "fuzz.h"
#include "settings.h"

// The host's view of the configuration file: its own key changes, and nothing else.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view before = Text(data, size);
    const auto list = plchost::SettingIn(before, "PLCLastFile");
    const std::string after = plchost::WithSetting(before, "Language", "de");
    Require(plchost::SettingIn(after, "Language") == "de", "a value comes back as set");
    Require(plchost::SettingIn(after, "PLCLastFile") == list, "the value of another key stays");
    Require(
        plchost::WithSetting(after, "Language", "de") == after, "the same setting changes nothing");
    static_cast<void>(plchost::CheckDebugFile(FileOf(before)));
    return 0;
}
