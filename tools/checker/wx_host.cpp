#include "wx_host.h"

#include <dlfcn.h>
#include <filesystem>

namespace plccheck {

namespace {

constexpr const char* libraryName = "libplcdebug-check-wx.so";

/// Where it lies beside this program: as it is built, or as it is installed.
std::filesystem::path FindLibrary()
{
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto built = program / ".." / "lib" / libraryName;
    std::error_code ignored;
    return (std::filesystem::is_regular_file(built, ignored)
                ? built
                : program / ".." / PLCDEBUG_PRIVATE_LIBRARIES / libraryName)
        .lexically_normal();
}

} // namespace

base::Result<RunWxHost> LoadWxHost()
{
    void* const library = dlopen(FindLibrary().c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const run = library != nullptr ? dlsym(library, "PlcRunWxHost") : nullptr;
    if (run == nullptr) {
        return base::Failure{
            std::string("no wxWidgets host for the checks: ") + dlerror() +
            " (it is installed together with plcdebug-check)"};
    }
    // POSIX promises that the address that dlsym() returns can be called as a function.
    return reinterpret_cast<RunWxHost>(run);
}

} // namespace plccheck
