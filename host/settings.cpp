#include "settings.h"

#include "file.h"
#include "plcdebug_host.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace plchost {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view headline = "[Settings]";
constexpr std::string_view languagePathKey = "LanguagePath";
constexpr std::string_view languageKey = "Language";
constexpr std::string_view lastFileKey = "PLCLastFile";

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool SameName(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

/// The lines of a text, each with its line end, so that together they are the text.
std::vector<std::string> LinesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

/// The lines of section [Settings], as places in the lines of an INI text.
struct Section
{
    std::size_t begin; ///< The line after the headline.
    std::size_t end;
};

std::optional<Section> FindSection(const std::vector<std::string>& lines)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string_view line = lines[i];
        if (i == 0 && line.substr(0, byteOrderMark.size()) == byteOrderMark) {
            line.remove_prefix(byteOrderMark.size());
        }
        if (!SameName(Trimmed(line), headline)) {
            continue;
        }
        std::size_t end = i + 1;
        while (end < lines.size() && Trimmed(lines[end]).substr(0, 1) != "[") {
            ++end;
        }
        return Section{i + 1, end};
    }
    return std::nullopt;
}

bool Sets(std::string_view line, std::string_view key)
{
    const auto equals = line.find('=');
    return equals != std::string_view::npos && SameName(Trimmed(line.substr(0, equals)), key);
}

/// As the debugger's configuration class reads it back: backslashes doubled, quotes around outer
/// blanks.
std::string Escaped(std::string_view value)
{
    std::string escaped;
    for (const char c : value) {
        if (c == '\\' || c == '"') {
            escaped += '\\';
        }
        escaped += c;
    }
    return Trimmed(value) == value && value.substr(0, 1) != "\"" ? escaped : '"' + escaped + '"';
}

/// The text of the settings file; empty when there is none yet.
base::Result<std::string> ReadSettings(const std::string& file)
{
    std::error_code ignored;
    return fs::exists(file, ignored) ? base::ReadFile(file) : std::string();
}

/// The value of a key; empty when it has none.
std::string Setting(const std::string& file, std::string_view key)
{
    const auto text = ReadSettings(file);
    return text ? SettingIn(*text, key).value_or("") : "";
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
        text = WithSetting(text, key, value);
    }
    return text == *old ? base::Result<void>() : ReplaceConfigFile(file, text);
}

} // namespace

ConfigFiles FilesIn(const std::string& folder, const std::string& machine)
{
    const std::string absolute = fs::absolute(folder).lexically_normal().string();
    const std::string prefix = (fs::path(absolute) / machine).string();
    return {
        absolute, prefix, (fs::path(absolute) / "plcdebug.ini").string(), prefix + "_plcdbgi.dat"};
}

std::optional<std::string> SettingIn(std::string_view text, std::string_view key)
{
    const auto lines = LinesOf(text);
    const Section settings = FindSection(lines).value_or(Section{0, 0});
    for (std::size_t i = settings.end; i > settings.begin; --i) {
        const std::string_view line = lines[i - 1];
        if (Sets(line, key)) {
            return std::string(Trimmed(line.substr(line.find('=') + 1)));
        }
    }
    return std::nullopt;
}

std::string WithSetting(std::string_view text, std::string_view key, std::string_view value)
{
    const std::string fresh = std::string(key) + '=' + Escaped(value) + '\n';
    auto lines = LinesOf(text);
    if (!lines.empty() && lines.back().back() != '\n') {
        lines.back() += '\n';
    }
    auto settings = FindSection(lines);
    if (!settings) {
        lines.push_back(std::string(headline) + '\n');
        settings = Section{lines.size(), lines.size()};
    }
    bool found = false;
    for (std::size_t i = settings->begin; i < settings->end; ++i) {
        if (Sets(lines[i], key)) {
            lines[i] = fresh;
            found = true;
        }
    }
    if (!found) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(settings->begin), fresh);
    }

    std::string result;
    for (const std::string& line : lines) {
        result += line;
    }
    return result;
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
    if (!Setting(files.settings, lastFileKey).empty()) {
        return {};
    }
    const std::string list = files.prefix + ".plc";
    std::error_code error;
    if (!fs::exists(list, error)) {
        fs::copy_file(sample, list, error);
    }
    if (error) {
        return base::Failure{
            "cannot copy the sample list \"" + sample + "\" to \"" + list +
            "\": " + error.message()};
    }
    return Change(files.settings, {{lastFileKey, list}});
}

base::Result<void> UseWatchList(const ConfigFiles& files, const std::string& lines)
{
    const std::string list = files.prefix + ".plc";
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
    constexpr std::int64_t indexOffsetAt = 8;
    constexpr const char* cure = " (start the host anew, it writes the file from its program)";
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        return base::Failure{"no program debug file \"" + file + "\"" + cure};
    }
    const auto numberAt = [&in](std::int64_t offset) {
        std::int32_t number = 0;
        in.seekg(offset);
        in.read(reinterpret_cast<char*>(&number), sizeof number);
        return in ? number : 0;
    };
    const std::int32_t index = numberAt(indexOffsetAt);
    if (index <= 0 || numberAt(index) <= 0) {
        return base::Failure{"the program debug file \"" + file + "\" holds no block" + cure};
    }
    return {};
}

} // namespace plchost
