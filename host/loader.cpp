#include "loader.h"

#include <array>
#include <filesystem>

namespace plchost {

namespace {

constexpr const char* libraryName = "libplcdebug.so";

} // namespace

base::Result<std::string> FindPlugin(const std::string& programFolder)
{
    const std::filesystem::path program(programFolder);
    const std::array<std::filesystem::path, 3> folders{
        program / ".." / "lib",
        program / ".." / "lib" / PLCHOST_LIBRARY_ARCHITECTURE,
        program,
    };
    std::string seen;
    for (const auto& folder : folders) {
        const auto candidate = folder / libraryName;
        std::error_code ignored;
        if (std::filesystem::is_regular_file(candidate, ignored)) {
            return candidate.lexically_normal().string();
        }
        seen += (seen.empty() ? "" : ", ") + folder.lexically_normal().string();
    }
    return base::Failure{
        std::string(libraryName) + " not found, looked in " + seen +
        " (build or install it, or name it with --plugin PATH)"};
}

base::Result<std::string> FindDataFolder(const std::string& programFolder)
{
    const auto folder =
        (std::filesystem::path(programFolder) / ".." / "share" / "plcdebug").lexically_normal();
    std::error_code ignored;
    if (std::filesystem::is_directory(folder, ignored)) {
        return folder.string();
    }
    return base::Failure{
        "no folder \"" + folder.string() +
        "\" with language files and samples (install it, or name it with --data-dir DIR)"};
}

base::Result<Plugin> LoadPlugin(const std::string& path)
{
    Plugin plugin{{}, path};
    std::array<char, PLC_WHY_SIZE> why{};
    // A path without a slash would send it to the system's folders.
    const std::string absolute = std::filesystem::absolute(path).string();
    if (PlcLoad(absolute.c_str(), &plugin, why.data()) == 0) {
        return base::Failure{std::string(why.data()) + " (--plugin PATH names another library)"};
    }
    return plugin;
}

} // namespace plchost
