#include "settings.h"

#include "file.h"
#include "ini.h"
#include "plcdebug_loader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace plchost {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view section = "Settings";
constexpr std::string_view languagePathKey = "LanguagePath";
constexpr std::string_view languageKey = "Language";
constexpr std::string_view lastFileKey = "PLCLastFile";

/// The text of the settings file; empty when there is none yet.
base::Result<std::string> ReadSettings(const std::string& file)
{
    std::error_code ignored;
    return fs::exists(file, ignored) ? base::ReadFile(file) : std::string();
}

/// The debugger watches no more, and says so in front of every longer list.
constexpr std::size_t longestWatchList = 20;

/// The value of a key; empty when it has none.
std::string Setting(const std::string& file, std::string_view key)
{
    const auto text = ReadSettings(file);
    return text ? base::IniValue(*text, section, key).value_or("") : "";
}

/// Gives keys values; everything else in the file stays.
base::Result<void>
Change(const std::string& file, const std::vector<std::pair<std::string_view, std::string>>& values)
{
    const auto old = ReadSettings(file);
    if (!old) {
        return base::Failure{old.Message()};
    }
    std::string text = *old;
    for (const auto& [key, value] : values) {
        text = base::WithIniValue(text, section, key, value);
    }
    return text == *old ? base::Result<void>() : ReplaceConfigFile(file, text);
}

/// The list that a machine begins with.
std::string ListOf(const ConfigFiles& files)
{
    return files.prefix + ".plc";
}

/// Lets the debugger begin with a machine's list, unless it has had another one.
/// @param make writes the list; not called when the operator has saved one under its name.
base::Result<void>
Seed(const ConfigFiles& files, const std::function<base::Result<void>(const std::string&)>& make)
{
    if (!Setting(files.settings, lastFileKey).empty()) {
        return {};
    }
    const std::string list = ListOf(files);
    if (std::error_code ignored; !fs::exists(list, ignored)) {
        if (auto made = make(list); !made) {
            return made;
        }
    }
    return Change(files.settings, {{lastFileKey, list}});
}

} // namespace

ConfigFiles FilesIn(const std::string& folder, const std::string& machine)
{
    const std::string absolute = fs::absolute(folder).lexically_normal().string();
    const std::string prefix = (fs::path(absolute) / machine).string();
    return {
        absolute, prefix, (fs::path(absolute) / "plcdebug.ini").string(), prefix + "_plcdbgi.dat"};
}

base::Result<void> WriteSettings(const std::string& file, const DebuggerSettings& settings)
{
    return Change(
        file, {{languagePathKey, settings.languagePath}, {languageKey, settings.language}});
}

std::string ReadLanguage(const std::string& file)
{
    return Setting(file, languageKey);
}

base::Result<void> SeedWatchList(const ConfigFiles& files, const std::string& sample)
{
    return Seed(files, [&sample](const std::string& list) -> base::Result<void> {
        if (std::error_code error; !fs::copy_file(sample, list, error)) {
            return base::Failure{
                "cannot copy the sample list \"" + sample + "\" to \"" + list +
                "\": " + error.message()};
        }
        return {};
    });
}

base::Result<void>
SeedWatchListOf(const ConfigFiles& files, const std::vector<std::string>& operands)
{
    if (operands.empty()) {
        return {};
    }
    return Seed(files, [&operands](const std::string& list) {
        return ReplaceConfigFile(list, WatchListOf(operands));
    });
}

std::string WatchListOf(const std::vector<std::string>& operands)
{
    std::string lines;
    for (std::size_t i = 0; i < std::min(operands.size(), longestWatchList); ++i) {
        lines += operands[i] + "/D\n";
    }
    return lines;
}

base::Result<void> UseWatchList(const ConfigFiles& files, const std::string& lines)
{
    const std::string list = ListOf(files);
    if (auto replaced = ReplaceConfigFile(list, lines); !replaced) {
        return replaced;
    }
    return Change(files.settings, {{lastFileKey, list}});
}

base::Result<void> ReplaceConfigFile(const std::string& file, std::string_view content)
{
    if (const auto replaced = base::ReplaceFile(file, content); !replaced) {
        return base::Failure{replaced.Message() + " (--config-dir names another folder)"};
    }
    return {};
}

base::Result<void> CheckDebugFile(const std::string& file)
{
    std::array<char, PLC_WHY_SIZE> why{};
    if (PlcCheckDebugFile(file.c_str(), why.data()) == 0) {
        return base::Failure{
            std::string(why.data()) +
            " (start the host anew, it writes the file from its program)"};
    }
    return {};
}

} // namespace plchost
