#include "loader.h"

#include <array>
#include <dlfcn.h>
#include <filesystem>

namespace plchost {

namespace {

constexpr const char* libraryName = "libplcdebug.so";

template <typename Export> bool Resolve(void* library, const char* name, Export& function)
{
    // POSIX promises that the address that dlsym() returns can be called as a function.
    function = reinterpret_cast<Export>(dlsym(library, name));
    return function != nullptr;
}

std::string FileName(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

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
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        return base::Failure{"no file \"" + path + "\" (name the library with --plugin PATH)"};
    }

    // A path without a slash would send dlopen() to the system's folders.
    const std::string absolute = std::filesystem::absolute(path).string();
    void* const library = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return base::Failure{
            std::string("cannot load the library: ") + dlerror() +
            " (is it built for this architecture, and is everything installed that it needs?)"};
    }

    Plugin plugin{path, nullptr, nullptr, nullptr, nullptr};
    const char* missing = nullptr;
    if (!Resolve(library, "ExportCreatePlcDebugger", plugin.create)) {
        missing = "ExportCreatePlcDebugger";
    } else if (!Resolve(library, "ExportDestroyPlcDebugger", plugin.destroy)) {
        missing = "ExportDestroyPlcDebugger";
    } else if (!Resolve(library, "ExportAnswerReadVar", plugin.answerReadVar)) {
        missing = "ExportAnswerReadVar";
    } else if (!Resolve(library, "ExportAnswerProgState", plugin.answerProgramState)) {
        missing = "ExportAnswerProgState";
    }
    if (missing != nullptr) {
        return base::Failure{
            FileName(path) + " has no symbol \"" + missing + "\" (is it an older library?)"};
    }
    return plugin;
}

} // namespace plchost
