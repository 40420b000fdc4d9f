#include "wx_host.h"

#include <dlfcn.h>

namespace plccheck {

base::Result<RunWxHost> LoadWxHost()
{
    // The program's own run path leads there.
    void* const library = dlopen("libplcdebug-check-wx.so", RTLD_NOW | RTLD_LOCAL);
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
