#include "fuzz.h"
#include "ini.h"
#include "settings.h"

// The host's view of the configuration file: its own key changes, and nothing else.

namespace {

auto Value(std::string_view text, std::string_view key)
{
    return base::IniValue(text, "Settings", key);
}

std::string WithLanguage(std::string_view text)
{
    return base::WithIniValue(text, "Settings", "Language", "de");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view before = Text(data, size);
    const auto list = Value(before, "PLCLastFile");
    const std::string after = WithLanguage(before);
    const auto language = Value(after, "Language");
    Require(
        language == "de" || (language && language == Value(before, "Language")),
        "a value comes back as set, or is fixed");
    Require(Value(after, "PLCLastFile") == list, "the value of another key stays");
    Require(WithLanguage(after) == after, "the same setting changes nothing");
    static_cast<void>(plchost::CheckDebugFile(FileOf(before)));
    return 0;
}
